#include "pipeline/scratch_folder.h"

#include "platform/file_tree.h"

#include <exception>
#include <system_error>

namespace velmora
{

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder(const fs::path& parent, const std::string& name) : m_path(parent / name)
{
    std::error_code error;
    fs::create_directories(parent, error);
    const bool made = !error && fs::create_directory(m_path, error);
    if (made)
        fs::permissions(m_path, fs::perms::owner_all, error);
    if (error || !made)
        throw FileError("The folder “" + m_path.string() + "” could not be made: " +
                        (error ? error.message() : "something of that name is there already") + ".");
}

ScratchFolder::~ScratchFolder()
{
    try {
        removeTree(m_path);
    } catch (const std::exception&) {
        // What cannot be removed stays for the system's own clearing of temporary folders.
    }
}

} // namespace velmora
