#include "platform/data_copy.h"

#include "platform/file_descriptor.h"
#include "platform/file_error.h"

#include <algorithm>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#ifdef __linux__
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

namespace velmora
{
namespace
{

constexpr off_t pieceSize = 8 * 1024 * 1024; ///< how much is copied before a stop is looked for
constexpr std::size_t bufferSize = std::size_t{1024} * 1024;

/// Makes `to` share all blocks of `from`; false where the file system cannot.
bool shareBlocks(int from, int to)
{
#ifdef FICLONE
    return ::ioctl(to, FICLONE, from) == 0;
#else
    static_cast<void>(from);
    static_cast<void>(to);
    return false;
#endif
}

off_t copyThroughBuffer(const DataCopy& copy, DataRange piece, std::vector<char>& buffer)
{
    buffer.resize(bufferSize);
    const std::size_t wanted = std::min(buffer.size(), static_cast<std::size_t>(piece.end - piece.start));
    const ssize_t got = retryInterrupted([&] { return ::pread(copy.from, buffer.data(), wanted, piece.start); });
    if (got < 0)
        throwFileError("read", copy.source, errno);
    if (got == 0)
        throwFileError("copy", copy.source, "it became shorter meanwhile");
    for (ssize_t written = 0; written < got;) {
        const ssize_t count = retryInterrupted([&] {
            return ::pwrite(copy.to, buffer.data() + written, static_cast<std::size_t>(got - written),
                            piece.start + written);
        });
        if (count < 0)
            throwFileError("write", copy.target, errno);
        written += count;
    }
    return got;
}

} // namespace

DataRange nextData(int fd, DataRange within, const std::string& path)
{
#ifdef SEEK_DATA
    const off_t start = ::lseek(fd, within.start, SEEK_DATA);
    const bool isHole = start < 0 && errno == ENXIO;
    if (isHole || start >= within.end) {
        struct stat status {
        };
        if (::fstat(fd, &status) != 0 || status.st_size < within.end)
            throwFileError("read", path, "it became shorter meanwhile");
        return {within.end, within.end};
    }
    if (start >= 0) {
        const off_t end = ::lseek(fd, start, SEEK_HOLE);
        return {start, end > start ? std::min(end, within.end) : within.end};
    }
#endif
    static_cast<void>(fd);
    static_cast<void>(path);
    return within;
}

off_t copyInsideSystem(int from, DataRange range, int to, off_t writeAt)
{
#ifdef __linux__
    off_t readAt = range.start;
    const auto length = static_cast<std::size_t>(range.end - range.start);
    return std::max<off_t>(0, ::copy_file_range(from, &readAt, to, &writeAt, length, 0));
#else
    static_cast<void>(from);
    static_cast<void>(range);
    static_cast<void>(to);
    static_cast<void>(writeAt);
    return 0;
#endif
}

void copyData(const DataCopy& copy, const std::function<void()>& betweenPieces)
{
    if (copy.size > 0 && shareBlocks(copy.from, copy.to))
        return;
    std::vector<char> buffer;
    bool systemCopies = true;
    for (DataRange data = nextData(copy.from, {0, copy.size}, copy.source); data.start < copy.size;) {
        betweenPieces();
        const DataRange piece{data.start, std::min(data.end, data.start + pieceSize)};
        off_t done = systemCopies ? copyInsideSystem(copy.from, piece, copy.to, piece.start) : 0;
        if (done == 0) {
            systemCopies = false;
            done = copyThroughBuffer(copy, piece, buffer);
        }
        data.start += done;
        if (data.start >= data.end)
            data = nextData(copy.from, {data.end, copy.size}, copy.source);
    }
    // A hole at the end.
    if (retryInterrupted([&] { return ::ftruncate(copy.to, copy.size); }) != 0)
        throwFileError("write", copy.target, errno);
}

} // namespace velmora
