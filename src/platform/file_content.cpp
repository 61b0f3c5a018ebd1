#include "platform/claimed_path.h"
#include "platform/file_descriptor.h"
#include "platform/file_error.h"

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/stat.h>

namespace velmora
{
namespace
{

constexpr mode_t ordinaryMode = 0644; ///< less what the user's umask takes away

void writeAll(const FileDescriptor& file, std::string_view bytes, const std::filesystem::path& path)
{
    while (!bytes.empty()) {
        const ssize_t count = retryInterrupted([&] { return ::write(file.get(), bytes.data(), bytes.size()); });
        if (count < 0)
            throwFileError("write", path, errno);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void finishWriting(FileDescriptor& file, const std::filesystem::path& path)
{
    if (!file.close())
        throwFileError("write", path, errno);
}

/// Pipes and devices would block or swallow what is written, and never end when they are read.
struct stat requireRegular(const FileDescriptor& file, const char* action, const std::filesystem::path& path)
{
    struct stat status {
    };
    if (::fstat(file.get(), &status) != 0)
        throwFileError(action, path, errno);
    if (!S_ISREG(status.st_mode))
        throwFileError(action, path, S_ISDIR(status.st_mode) ? "it is a folder" : "it is not an ordinary file");
    return status;
}

/// Only a file can be replaced: in the place of a device or a pipe, a file would take from everybody what that is for.
/// A folder is left to the system to complain about.
void requireReplaceable(const std::filesystem::path& path)
{
    std::error_code ignored;
    const std::filesystem::file_status found = std::filesystem::status(path, ignored);
    if (std::filesystem::exists(found) && !std::filesystem::is_regular_file(found) &&
        !std::filesystem::is_directory(found))
        throwFileError("write", path, "it is not an ordinary file");
}

/// A new file beside the one that it will replace; removed again unless it was moved there.
class TemporaryFile
{
public:
    explicit TemporaryFile(const std::filesystem::path& goal) : m_claimed(claimFileBeside(goal))
    {
        file = FileDescriptor(
            retryInterrupted([&] { return ::open(m_claimed.path.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC); }));
        if (!file)
            throwFileError("write", goal, errno);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (!m_claimed.path.empty())
            ::unlink(m_claimed.path.c_str());
    }

    void moveTo(const std::filesystem::path& goal)
    {
        if (::rename(m_claimed.path.c_str(), goal.c_str()) != 0)
            throwFileError("write", goal, errno);
        m_claimed.path.clear();
    }

    FileDescriptor file{};

private:
    ClaimedPath m_claimed{}; ///< no path once it was moved
};

int makeLasting(int fd)
{
#ifdef F_FULLFSYNC
    if (::fcntl(fd, F_FULLFSYNC) == 0)
        return 0;
#endif
    return retryInterrupted([&] { return ::fsync(fd); });
}

} // namespace

void writeFileAtomically(const std::filesystem::path& path, std::string_view bytes)
{
    requireUsable("write", path);
    requireReplaceable(path);
    TemporaryFile temporary(path);
    writeAll(temporary.file, bytes, path);
    // Otherwise the new name could outlive a power failure and its content not.
    if (makeLasting(temporary.file.get()) != 0)
        throwFileError("write", path, errno);
    finishWriting(temporary.file, path);
    temporary.moveTo(path);
}

void writeFile(const std::filesystem::path& path, std::string_view bytes)
{
    requireUsable("write", path);
    FileDescriptor file(retryInterrupted(
        [&] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, ordinaryMode); }));
    if (!file)
        throwFileError("write", path, errno);
    requireRegular(file, "write", path);
    if (::ftruncate(file.get(), 0) != 0)
        throwFileError("write", path, errno);
    writeAll(file, bytes, path);
    finishWriting(file, path);
}

bool isStream(const std::filesystem::path& path)
{
    std::error_code ignored;
    const std::filesystem::file_status found = std::filesystem::status(path, ignored);
    return std::filesystem::is_fifo(found) || std::filesystem::is_character_file(found);
}

void writeToStream(const std::filesystem::path& path, std::string_view bytes)
{
    requireUsable("write", path);
    FileDescriptor file(
        retryInterrupted([&] { return ::open(path.c_str(), O_WRONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC); }));
    // Opening did not wait for a reader; writing does.
    if (!file || ::fcntl(file.get(), F_SETFL, 0) != 0)
        throwFileError("write", path, errno == ENXIO ? "nobody reads from it" : systemErrorText(errno));
    writeAll(file, bytes, path);
    finishWriting(file, path);
}

std::string readFile(const std::filesystem::path& path, std::uint64_t limit)
{
    requireUsable("read", path);
    const FileDescriptor file(
        retryInterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
    if (!file)
        throwFileError("read", path, errno);
    const auto expected = static_cast<std::uint64_t>(requireRegular(file, "read", path).st_size);
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(std::min(expected, limit)));
    std::array<char, 65536> buffer{};
    while (bytes.size() <= limit) {
        const ssize_t count = retryInterrupted([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
        if (count < 0)
            throwFileError("read", path, errno);
        if (count == 0)
            return bytes;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    throwFileError("read", path, "it is larger than " + std::to_string(limit) + " bytes");
}

void syncToDisk(const std::filesystem::path& path)
{
    requireUsable("save", path);
    const FileDescriptor file(
        retryInterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
    if (!file)
        throwFileError("save", path, errno);
    // Some file systems know no such request for folders.
    if (makeLasting(file.get()) != 0 && errno != EINVAL)
        throwFileError("save", path, errno);
}

} // namespace velmora
