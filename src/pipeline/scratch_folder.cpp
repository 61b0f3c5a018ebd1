#include "pipeline/scratch_folder.h"

#include "platform/file_tree.h"

#include <exception>
#include <string>
#include <system_error>

namespace velmora
{

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder(const fs::path& parent, std::string_view prefix, std::string_view uuid,
                             std::string_view suffix)
{
    std::error_code error;
    fs::create_directories(parent, error);
    try {
        m_folder = claimFolder(parent, {.prefix = prefix, .uuid = uuid, .suffix = suffix});
    } catch (const FileError&) {
        if (error)
            throw FileError("The folder “" + parent.string() + "” could not be made: " + error.message() + ".");
        throw;
    }
}

ScratchFolder::~ScratchFolder()
{
    try {
        removeTree(m_folder.path);
    } catch (const std::exception&) {
        // What cannot be removed stays for the system's own clearing of temporary folders.
    }
}

} // namespace velmora
