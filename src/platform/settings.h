#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace velmora
{

/// The user's small settings by key. A value that is absent, or stored as something else, is nothing; the caller knows
/// the default. Used on one thread.
class SettingsStore
{
public:
    virtual ~SettingsStore() = default;

    [[nodiscard]] virtual std::optional<std::string> stringValue(const std::string& key) const = 0;
    [[nodiscard]] virtual std::optional<bool> boolValue(const std::string& key) const = 0;
    [[nodiscard]] virtual std::optional<std::int64_t> intValue(const std::string& key) const = 0;

    /// Written values are on disk when the call returns, unless the disk refuses: settings never fail an operation.
    virtual void setString(const std::string& key, const std::string& value) = 0;
    virtual void setBool(const std::string& key, bool value) = 0;
    virtual void setInt(const std::string& key, std::int64_t value) = 0;
};

/// The real user's store, where the system keeps such settings.
std::unique_ptr<SettingsStore> openUserSettings();
/// A store in an INI file of its own, which need not exist.
std::unique_ptr<SettingsStore> openSettingsFile(const std::filesystem::path& file);

} // namespace velmora
