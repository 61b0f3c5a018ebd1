#pragma once

#include "diskimage/base/bytes.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace velmora::diskimage
{

/// The bytes from `start` up to, but not including, `end`.
struct ByteRange {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    [[nodiscard]] std::uint64_t length() const { return end - start; }
    bool operator==(const ByteRange&) const = default;
};

/// Bytes that can be read at any place: a file, a part of one, an expanded image. Every call may come from any thread.
class Source
{
public:
    virtual ~Source() = default;
    /// Length in bytes; fixed while the object lives, except for a Storage that is written.
    [[nodiscard]] virtual std::uint64_t size() const = 0;
    /// Fills all of `out` from byte `offset` on. Throws DiskImageError when that reaches beyond the end or cannot be
    /// read.
    virtual void read(std::uint64_t offset, MutableByteView out) const = 0;
    /// The same, as a new buffer; `length` has been checked by the caller against a limit that fits memory.
    [[nodiscard]] Bytes read(std::uint64_t offset, std::size_t length) const;
    /// The next range at or after `offset` (at most size()) that may hold something else than zeros; empty, at the end,
    /// when only a hole follows. What lies before it need not be read. A source that knows nothing of holes is all
    /// data.
    [[nodiscard]] virtual ByteRange nextData(std::uint64_t offset) const;
};

/// Fills `out` like Source::read, with zeros where there are holes, which are not read.
void readAroundHoles(const Source& source, std::uint64_t offset, MutableByteView out);

/// A Source that can also be written. Writing beyond the end makes it longer; what lies between reads as zeros and
/// takes no space where the file system has holes.
class Storage : public Source
{
public:
    /// Throws DiskImageError, naming the file and the reason (a full disk, say).
    virtual void write(std::uint64_t offset, ByteView bytes) = 0;
    /// Makes the storage exactly `size` bytes long.
    virtual void resize(std::uint64_t size) = 0;
    /// Lets the system copy a range of `source` to `offset`, without moving the bytes through the program. Returns how
    /// many bytes from the start of the range it did; 0, where it cannot, is no error: reading and writing will do or
    /// show why not.
    virtual std::uint64_t copyFrom(const Source& source, ByteRange range, std::uint64_t offset);
};

/// How openFile opens.
enum class OpenMode {
    readOnly,
    readWrite, ///< the file exists
    create     ///< a new file, or an existing one emptied
};

/// A file as storage; writing to one opened `readOnly` throws. Throws DiskImageError, naming the path and the reason.
std::unique_ptr<Storage> openFile(const std::filesystem::path& path, OpenMode mode);

/// Storage in memory.
std::unique_ptr<Storage> memoryStorage(Bytes bytes = {});

/// `length` bytes of `base` from `offset` on, both checked against its size (DiskImageError). Keeps a reference:
/// `base` must outlive the result.
std::unique_ptr<Source> sliceOf(const Source& base, std::uint64_t offset, std::uint64_t length);
std::unique_ptr<Storage> sliceOf(Storage& base, std::uint64_t offset, std::uint64_t length);

} // namespace velmora::diskimage
