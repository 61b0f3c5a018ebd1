#pragma once

#include <filesystem>
#include <string>

namespace velmora
{

/// What the program asks of the desktop.
class Desktop
{
public:
    virtual ~Desktop() = default;
    /// Shows and selects a file in the file manager.
    virtual void reveal(const std::filesystem::path& file) = 0;
    /// Shows what is in a folder in the file manager.
    virtual void openFolder(const std::filesystem::path& folder) = 0;
    /// Opens an http or https address in the browser.
    virtual void openAddress(const std::string& address) = 0;
};

} // namespace velmora
