#include "diskimage/base/storage.h"

#include "diskimage/base/error.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <limits>
#include <mutex>
#include <system_error>

namespace velmora::diskimage
{
namespace
{

/// The end of a range, checked against the largest position that files can have.
std::uint64_t endOf(std::uint64_t offset, std::uint64_t length)
{
    constexpr std::uint64_t limit = std::numeric_limits<std::int64_t>::max();
    if (offset > limit || length > limit - offset) {
        throw DiskImageError("A position of " + std::to_string(offset) + " bytes is beyond what files can have.");
    }
    return offset + length;
}

void checkRange(std::uint64_t offset, std::uint64_t length, std::uint64_t size, const std::string& where)
{
    if (offset > size || length > size - offset) {
        throw DiskImageError("Reading " + std::to_string(length) + " bytes at " + std::to_string(offset) +
                             " reaches beyond the end of " + where + " (" + std::to_string(size) + " bytes).");
    }
}

class FileStorage : public Storage
{
public:
    FileStorage(const std::filesystem::path& path, OpenMode mode)
        : m_path(std::filesystem::absolute(path)), m_writable(mode != OpenMode::readOnly)
    {
        std::error_code ignored;
        if (std::filesystem::is_directory(m_path, ignored)) {
            throw DiskImageError("Cannot open \"" + m_path.string() + "\": it is a folder.");
        }
        auto flags = std::ios::in | std::ios::binary;
        if (m_writable) {
            flags |= std::ios::out;
        }
        if (mode == OpenMode::create) {
            flags |= std::ios::trunc;
        }
        // The callers move large pieces; a buffer would only copy them once more and delay errors.
        m_file.pubsetbuf(nullptr, 0);
        errno = 0;
        if (!m_file.open(m_path, flags)) {
            fail("open");
        }
        const auto end = std::streamoff(m_file.pubseekoff(0, std::ios::end));
        if (end < 0) {
            fail("read");
        }
        m_size = static_cast<std::uint64_t>(end);
    }

    [[nodiscard]] std::uint64_t size() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_size;
    }

    void read(std::uint64_t offset, MutableByteView out) const override
    {
        const std::lock_guard lock(m_mutex);
        checkRange(offset, out.size(), m_size, "\"" + m_path.string() + "\"");
        if (out.empty()) {
            return;
        }
        seek(offset, "read");
        bool complete = false;
        try {
            complete = m_file.sgetn(reinterpret_cast<char*>(out.data()), length(out.size())) == length(out.size());
        } catch (const std::ios_base::failure&) { // how the standard library reports that a read failed
        }
        if (!complete) {
            fail("read");
        }
    }

    void write(std::uint64_t offset, ByteView bytes) override
    {
        const std::lock_guard lock(m_mutex);
        checkWritable();
        if (bytes.empty()) {
            return;
        }
        const auto end = endOf(offset, bytes.size());
        seek(offset, "write");
        if (m_file.sputn(reinterpret_cast<const char*>(bytes.data()), length(bytes.size())) != length(bytes.size())) {
            fail("write");
        }
        m_size = std::max(m_size, end);
    }

    void resize(std::uint64_t size) override
    {
        const std::lock_guard lock(m_mutex);
        checkWritable();
        std::error_code error;
        std::filesystem::resize_file(m_path, endOf(size, 0), error);
        if (error) {
            throw DiskImageError("Cannot make \"" + m_path.string() + "\" " + std::to_string(size) +
                                 " bytes long: " + error.message() + ".");
        }
        m_size = size;
    }

private:
    static std::streamsize length(std::size_t size) { return static_cast<std::streamsize>(size); }

    void seek(std::uint64_t offset, const char* purpose) const
    {
        errno = 0;
        if (std::streamoff(m_file.pubseekpos(static_cast<std::streamoff>(offset))) < 0) {
            fail(purpose);
        }
    }

    void checkWritable() const
    {
        if (!m_writable) {
            throw DiskImageError("Cannot write \"" + m_path.string() + "\": it was opened for reading only.");
        }
    }

    [[noreturn]] void fail(const char* purpose) const
    {
        const auto reason = errno != 0 ? std::generic_category().message(errno) : "the file ends early or is damaged";
        throw DiskImageError("Cannot " + std::string(purpose) + " \"" + m_path.string() + "\": " + reason + ".");
    }

    std::filesystem::path m_path;
    bool m_writable;
    mutable std::mutex m_mutex; ///< position, then transfer: one at a time
    mutable std::filebuf m_file;
    std::uint64_t m_size = 0;
};

class MemoryStorage : public Storage
{
public:
    explicit MemoryStorage(Bytes bytes) : m_bytes(std::move(bytes)) {}

    [[nodiscard]] std::uint64_t size() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_bytes.size();
    }
    void read(std::uint64_t offset, MutableByteView out) const override
    {
        const std::lock_guard lock(m_mutex);
        checkRange(offset, out.size(), m_bytes.size(), "the data");
        std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(offset), out.size(), out.begin());
    }
    void write(std::uint64_t offset, ByteView bytes) override
    {
        const std::lock_guard lock(m_mutex);
        if (bytes.empty()) {
            return;
        }
        const auto end = endOf(offset, bytes.size());
        if (end > m_bytes.size()) {
            resizeLocked(end);
        }
        std::copy(bytes.begin(), bytes.end(), m_bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    void resize(std::uint64_t size) override
    {
        const std::lock_guard lock(m_mutex);
        resizeLocked(size);
    }

private:
    void resizeLocked(std::uint64_t size)
    {
        if (size > m_bytes.max_size()) {
            throw DiskImageError("Not enough memory for " + std::to_string(size) + " bytes.");
        }
        m_bytes.resize(static_cast<std::size_t>(size));
    }

    mutable std::mutex m_mutex;
    Bytes m_bytes;
};

std::uint64_t checkedSlice(const Source& base, std::uint64_t offset, std::uint64_t length)
{
    checkRange(offset, length, base.size(), "the disk");
    return length;
}

/// What the base knows, as a part of it sees it.
ByteRange nextDataOfSlice(const Source& base, ByteRange slice, std::uint64_t offset)
{
    checkRange(offset, 0, slice.length(), "a part of the disk");
    const ByteRange data = base.nextData(slice.start + offset);
    return {std::min(data.start, slice.end) - slice.start, std::min(data.end, slice.end) - slice.start};
}

class SourceSlice : public Source
{
public:
    SourceSlice(const Source& base, std::uint64_t offset, std::uint64_t length)
        : m_base(base), m_offset(offset), m_length(checkedSlice(base, offset, length))
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return m_length; }
    void read(std::uint64_t offset, MutableByteView out) const override
    {
        checkRange(offset, out.size(), m_length, "a part of the disk");
        m_base.read(m_offset + offset, out);
    }
    [[nodiscard]] ByteRange nextData(std::uint64_t offset) const override
    {
        return nextDataOfSlice(m_base, {m_offset, m_offset + m_length}, offset);
    }

private:
    const Source& m_base;
    std::uint64_t m_offset;
    std::uint64_t m_length;
};

class StorageSlice : public Storage
{
public:
    StorageSlice(Storage& base, std::uint64_t offset, std::uint64_t length)
        : m_base(base), m_offset(offset), m_length(checkedSlice(base, offset, length))
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return m_length; }
    void read(std::uint64_t offset, MutableByteView out) const override
    {
        checkRange(offset, out.size(), m_length, "a part of the disk");
        m_base.read(m_offset + offset, out);
    }
    [[nodiscard]] ByteRange nextData(std::uint64_t offset) const override
    {
        return nextDataOfSlice(m_base, {m_offset, m_offset + m_length}, offset);
    }
    void write(std::uint64_t offset, ByteView bytes) override
    {
        checkPlace(offset, bytes.size());
        m_base.write(m_offset + offset, bytes);
    }
    std::uint64_t copyFrom(const Source& source, ByteRange range, std::uint64_t offset) override
    {
        checkPlace(offset, range.length());
        return m_base.copyFrom(source, range, m_offset + offset);
    }
    void resize(std::uint64_t size) override
    {
        // What follows the part on the disk has its place.
        if (size != m_length) {
            throw DiskImageError("A part of a disk cannot change its size.");
        }
    }

private:
    void checkPlace(std::uint64_t offset, std::uint64_t length) const
    {
        if (offset > m_length || length > m_length - offset) {
            throw DiskImageError("Writing " + std::to_string(length) + " bytes at " + std::to_string(offset) +
                                 " reaches beyond the end of a part of the disk (" + std::to_string(m_length) +
                                 " bytes).");
        }
    }

    Storage& m_base;
    std::uint64_t m_offset;
    std::uint64_t m_length;
};

} // namespace

Bytes Source::read(std::uint64_t offset, std::size_t length) const
{
    // Asking first keeps a wrong length from allocating more than there is to read.
    checkRange(offset, length, size(), "the data");
    Bytes bytes(length);
    read(offset, MutableByteView(bytes));
    return bytes;
}

ByteRange Source::nextData(std::uint64_t offset) const
{
    checkRange(offset, 0, size(), "the data");
    return {offset, size()};
}

void readAroundHoles(const Source& source, std::uint64_t offset, MutableByteView out)
{
    checkRange(offset, out.size(), source.size(), "the data");
    while (!out.empty()) {
        const auto data = source.nextData(offset);
        const auto hole = std::min<std::uint64_t>(data.start - offset, out.size());
        std::fill_n(out.begin(), hole, std::uint8_t{0});
        const auto length = std::min<std::uint64_t>(data.length(), out.size() - hole);
        source.read(data.start, out.subspan(hole, length));
        out = out.subspan(hole + length);
        offset += hole + length;
    }
}

std::uint64_t Storage::copyFrom(const Source& /*source*/, ByteRange /*range*/, std::uint64_t /*offset*/)
{
    return 0;
}

std::unique_ptr<Storage> openFile(const std::filesystem::path& path, OpenMode mode)
{
    return std::make_unique<FileStorage>(path, mode);
}

std::unique_ptr<Storage> memoryStorage(Bytes bytes)
{
    return std::make_unique<MemoryStorage>(std::move(bytes));
}

std::unique_ptr<Source> sliceOf(const Source& base, std::uint64_t offset, std::uint64_t length)
{
    return std::make_unique<SourceSlice>(base, offset, length);
}

std::unique_ptr<Storage> sliceOf(Storage& base, std::uint64_t offset, std::uint64_t length)
{
    return std::make_unique<StorageSlice>(base, offset, length);
}

} // namespace velmora::diskimage
