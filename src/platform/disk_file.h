#pragma once

#include "platform/file_descriptor.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace velmora
{

/// A file read and written at any place, with what the system can do beyond that: tell where its holes are and copy
/// between files by itself. Reading may happen on any thread, writing on one.
class DiskFile
{
public:
    enum class Access { read, readWrite };

    /// Opens an ordinary file that exists; links are followed. Throws FileError, as all members do.
    DiskFile(const std::filesystem::path& path, Access access);

    /// Bytes; as found at opening, unless this object changed it.
    [[nodiscard]] std::uint64_t size() const { return m_size; }

    /// Fills all of `length` bytes from byte `offset` on; the file ending early is an error.
    void read(std::uint64_t offset, void* bytes, std::size_t length) const;
    void write(std::uint64_t offset, const void* bytes, std::size_t length);
    void resize(std::uint64_t size);

    struct Range {
        std::uint64_t start = 0;
        std::uint64_t end = 0; ///< behind the last byte
    };
    /// The next range of data at or after `from`; {size(), size()} when only a hole follows. A file that has become
    /// shorter is an error, as its end would look like a hole.
    [[nodiscard]] Range nextData(std::uint64_t from) const;

    /// Lets the system copy a range of `source` to `offset` here, sharing blocks where the file system can. Returns how
    /// many bytes it did, from the start of the range on; 0 when it cannot, which reading and writing then explains.
    std::uint64_t copyFrom(const DiskFile& source, Range range, std::uint64_t offset);

private:
    std::string m_path;
    FileDescriptor m_file;
    std::atomic<std::uint64_t> m_size = 0;
};

} // namespace velmora
