#include "platform/data_copy.h"

#include "platform/file_descriptor.h"
#include "platform/file_error.h"

#include <algorithm>
#include <vector>

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

struct Range {
    off_t start;
    off_t end;
};

/// The next range of data at or after `from`; empty at `size` when only a hole is left.
Range nextData(int fd, off_t from, off_t size)
{
#ifdef SEEK_DATA
    const off_t start = ::lseek(fd, from, SEEK_DATA);
    if (start < 0 && errno == ENXIO)
        return {size, size};
    if (start >= 0) {
        const off_t end = ::lseek(fd, start, SEEK_HOLE);
        return {std::min(start, size), end > start ? std::min(end, size) : size};
    }
#endif
    static_cast<void>(fd);
    return {from, size};
}

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

/// Lets the system copy a piece and returns how much it did; nothing where it cannot, which is never an error: reading
/// and writing then shows the true one.
off_t copyInsideSystem(const DataCopy& copy, Range piece)
{
#ifdef __linux__
    off_t readAt = piece.start;
    off_t writeAt = piece.start;
    const auto length = static_cast<std::size_t>(piece.end - piece.start);
    return std::max<off_t>(0, ::copy_file_range(copy.from, &readAt, copy.to, &writeAt, length, 0));
#else
    static_cast<void>(copy);
    static_cast<void>(piece);
    return 0;
#endif
}

off_t copyThroughBuffer(const DataCopy& copy, Range piece, std::vector<char>& buffer)
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

void copyData(const DataCopy& copy, const std::function<void()>& betweenPieces)
{
    if (copy.size > 0 && shareBlocks(copy.from, copy.to))
        return;
    std::vector<char> buffer;
    bool systemCopies = true;
    for (Range data = nextData(copy.from, 0, copy.size); data.start < copy.size;) {
        betweenPieces();
        const Range piece{data.start, std::min(data.end, data.start + pieceSize)};
        off_t done = systemCopies ? copyInsideSystem(copy, piece) : 0;
        if (done == 0) {
            systemCopies = false;
            done = copyThroughBuffer(copy, piece, buffer);
        }
        data.start += done;
        if (data.start >= data.end)
            data = nextData(copy.from, data.end, copy.size);
    }
    // A hole at the end.
    if (retryInterrupted([&] { return ::ftruncate(copy.to, copy.size); }) != 0)
        throwFileError("write", copy.target, errno);
}

} // namespace velmora
