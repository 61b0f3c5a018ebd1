#include "cli/output_place.h"

#include "model/uuid.h"
#include "platform/file_tree.h"

namespace velmora::cli
{
namespace fs = std::filesystem;

OutputPlace::OutputPlace(fs::path output) : m_output(fs::absolute(std::move(output)))
{
    std::error_code error;
    if (fs::is_directory(fs::symlink_status(m_output, error)))
        throw FileError("The output is a folder: " + m_output.string());
    const fs::path parent = m_output.parent_path();
    try {
        m_folder = claimFolder(parent, {.prefix = ".velmora-output-", .uuid = Uuid::random().toString()});
    } catch (const FileError& reason) {
        throw FileError("Cannot write into the output's folder " + parent.string() + ": " + reason.what());
    }
}

OutputPlace::~OutputPlace()
{
    try {
        removeTree(m_folder.path);
    } catch (const FileError&) {
        // Nobody is left to tell, and the image itself is either in its place or was reported as failed.
    }
}

std::string OutputPlace::inPublic(std::string message) const
{
    const std::string hidden = "/" + m_folder.path.filename().string();
    for (std::size_t at = message.find(hidden); at != std::string::npos; at = message.find(hidden, at))
        message.erase(at, hidden.size());
    return message;
}

void OutputPlace::commit()
{
    syncToDisk(buildPath());
    std::error_code error;
    fs::rename(buildPath(), m_output, error);
    if (error)
        throw FileError("Cannot put the finished image into its place " + m_output.string() + ": " + error.message());
    syncToDisk(m_output.parent_path());
}

} // namespace velmora::cli
