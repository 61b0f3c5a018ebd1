#pragma once

#include <filesystem>
#include <string>

namespace velmora
{

/// A new folder of the user's own (mode 0700) that is removed with everything in it at the end of this object's life.
class ScratchFolder
{
public:
    /// Makes `parent`/`name`, the parent too when missing. Throws FileError, also when the name is taken.
    ScratchFolder(const std::filesystem::path& parent, const std::string& name);
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace velmora
