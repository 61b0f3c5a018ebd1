#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include <cstdlib>

/// A folder of a test's own, removed with the standard library's means, so that ours are not judged by themselves.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "velmora-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        path = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path / name; }

    std::filesystem::path path{};
};
