#include "platform/disk_file.h"

#include "platform/data_copy.h"
#include "platform/file_error.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>

namespace velmora
{
namespace
{

/// Below this, asking the system for holes and copies costs more than it saves.
constexpr std::uint64_t smallFile = std::uint64_t{64} * 1024;

/// A position for the system's calls. Larger ones wrap to negative ones, which these refuse with a reason.
off_t position(std::uint64_t offset)
{
    return static_cast<off_t>(offset);
}

} // namespace

DiskFile::DiskFile(const std::filesystem::path& path, Access access)
    : m_path(path.string()), m_file(retryInterrupted([&] {
          const int flags = access == Access::read ? O_RDONLY : O_RDWR;
          return ::open(path.c_str(), flags | O_NONBLOCK | O_CLOEXEC); // not blocking, should it be a pipe
      }))
{
    requireUsable("open", m_path);
    struct stat status {
    };
    if (!m_file || ::fstat(m_file.get(), &status) != 0)
        throwFileError("open", m_path, errno);
    if (!S_ISREG(status.st_mode))
        throwFileError("open", m_path, S_ISDIR(status.st_mode) ? "it is a folder" : "it is not an ordinary file");
    m_size = static_cast<std::uint64_t>(status.st_size);
}

void DiskFile::read(std::uint64_t offset, void* bytes, std::size_t length) const
{
    for (auto* to = static_cast<char*>(bytes); length > 0;) {
        const ssize_t count = retryInterrupted([&] { return ::pread(m_file.get(), to, length, position(offset)); });
        if (count < 0)
            throwFileError("read", m_path, errno);
        if (count == 0)
            throwFileError("read", m_path, "it became shorter meanwhile");
        to += count;
        offset += static_cast<std::uint64_t>(count);
        length -= static_cast<std::size_t>(count);
    }
}

void DiskFile::write(std::uint64_t offset, const void* bytes, std::size_t length)
{
    for (const auto* from = static_cast<const char*>(bytes); length > 0;) {
        const ssize_t count = retryInterrupted([&] { return ::pwrite(m_file.get(), from, length, position(offset)); });
        if (count < 0)
            throwFileError("write", m_path, errno);
        from += count;
        offset += static_cast<std::uint64_t>(count);
        length -= static_cast<std::size_t>(count);
        m_size = std::max<std::uint64_t>(m_size, offset);
    }
}

void DiskFile::resize(std::uint64_t size)
{
    if (retryInterrupted([&] { return ::ftruncate(m_file.get(), position(size)); }) != 0)
        throwFileError("change the length of", m_path, errno);
    m_size = size;
}

DiskFile::Range DiskFile::nextData(std::uint64_t from) const
{
    const std::uint64_t size = m_size;
    if (size <= smallFile || from >= size)
        return {std::min(from, size), size};
    const DataRange data = velmora::nextData(m_file.get(), {position(from), position(size)}, m_path);
    return {static_cast<std::uint64_t>(data.start), static_cast<std::uint64_t>(data.end)};
}

std::uint64_t DiskFile::copyFrom(const DiskFile& source, Range range, std::uint64_t offset)
{
    if (range.end - range.start < smallFile)
        return 0;
    const off_t done = copyInsideSystem(source.m_file.get(), {position(range.start), position(range.end)}, m_file.get(),
                                        position(offset));
    if (done > 0)
        m_size = std::max<std::uint64_t>(m_size, offset + static_cast<std::uint64_t>(done));
    return static_cast<std::uint64_t>(done);
}

} // namespace velmora
