#include "tools/support/output_file.h"

#include <cstdio>
#include <random>
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

std::string randomSuffix()
{
    static constexpr char letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::uniform_int_distribution<std::size_t> pick(0, sizeof letters - 2);
    std::string suffix;
    for (int i = 0; i < 12; ++i)
        suffix += letters[pick(random)];
    return suffix;
}

} // namespace

fs::path temporaryNameBeside(const fs::path& target)
{
    return target.parent_path() / (".velmora-" + randomSuffix());
}

OutputFile::OutputFile(fs::path target, Existing existing) : m_target(std::move(target))
{
    std::error_code error;
    const fs::file_status found = fs::symlink_status(m_target, error);
    if (fs::is_directory(found))
        fail(m_target, "is a folder");
    if (fs::exists(found) && existing == Existing::refuse)
        fail(m_target, "file exists");

    m_temporary = temporaryNameBeside(m_target);
    // Exclusive creation: in a folder that others can write to, nobody's link is followed.
    std::FILE* const file = std::fopen(m_temporary.c_str(), "wbx");
    if (!file)
        fail(m_target, "cannot be created: " + std::generic_category().message(errno));
    std::fclose(file);
    const fs::perms most =
        fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;
    fs::permissions(m_temporary, fs::status(m_temporary, error).permissions() & most, error);
}

OutputFile::~OutputFile()
{
    std::error_code ignored; // nobody could be told, and the failure that led here is the one that matters
    if (!m_temporary.empty())
        fs::remove(m_temporary, ignored);
}

void OutputFile::commit()
{
    std::error_code error;
    fs::rename(m_temporary, m_target, error);
    if (error)
        fail(m_target, "cannot be put in place: " + error.message());
    m_temporary.clear();
}

} // namespace velmora::tools
