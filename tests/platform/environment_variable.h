#pragma once

#include <cstdlib>
#include <optional>
#include <string>

/// Sets an environment variable, or with an empty value takes it away, for as long as this lives.
class EnvironmentVariable
{
public:
    EnvironmentVariable(const char* name, const std::string& value) : m_name(name)
    {
        if (const char* const previous = std::getenv(name))
            m_previous = previous;
        set(value.empty() ? std::nullopt : std::optional(value));
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable() { set(m_previous); }

private:
    void set(const std::optional<std::string>& value)
    {
        if (value)
            ::setenv(m_name, value->c_str(), 1);
        else
            ::unsetenv(m_name);
    }

    const char* m_name;
    std::optional<std::string> m_previous{};
};
