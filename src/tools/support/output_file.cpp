#include "tools/support/output_file.h"

#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace velmora::tools
{

namespace
{

[[noreturn]] void fail(const fs::path& path, const std::string& reason)
{
    throw std::runtime_error("\"" + path.string() + "\": " + reason);
}

} // namespace

OutputFile::OutputFile(fs::path target, Existing existing) : m_target(std::move(target))
{
    std::error_code error;
    const fs::file_status found = fs::symlink_status(m_target, error);
    if (fs::is_directory(found))
        fail(m_target, "is a folder");
    if (fs::exists(found) && existing == Existing::refuse)
        fail(m_target, "file exists");

    m_temporary = claimFileBeside(m_target);
    const fs::perms most =
        fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;
    fs::permissions(m_temporary.path, fs::status(m_temporary.path, error).permissions() & most, error);
}

OutputFile::~OutputFile()
{
    std::error_code ignored; // nobody could be told, and the failure that led here is the one that matters
    if (!m_temporary.path.empty())
        fs::remove(m_temporary.path, ignored);
}

void OutputFile::commit()
{
    std::error_code error;
    fs::rename(m_temporary.path, m_target, error);
    if (error)
        fail(m_target, "cannot be put in place: " + error.message());
    m_temporary.path.clear();
}

} // namespace velmora::tools
