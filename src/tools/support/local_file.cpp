#include "tools/support/local_file.h"

#include "diskimage/base/error.h"
#include "platform/disk_file.h"
#include "platform/file_tree.h"

namespace velmora::tools
{

using namespace diskimage;

namespace
{

/// Calls the system's side and passes its errors on as this side's.
template <typename Call>
auto translated(Call call)
{
    try {
        return call();
    } catch (const FileError& error) {
        throw DiskImageError(error.what());
    }
}

class LocalFile : public Storage
{
public:
    LocalFile(const std::filesystem::path& path, OpenMode mode)
        : m_file(path, mode == OpenMode::readOnly ? DiskFile::Access::read : DiskFile::Access::readWrite)
    {
        if (mode == OpenMode::create)
            m_file.resize(0);
    }

    [[nodiscard]] std::uint64_t size() const override { return m_file.size(); }

    void read(std::uint64_t offset, MutableByteView out) const override
    {
        translated([&] { m_file.read(offset, out.data(), out.size()); });
    }

    [[nodiscard]] ByteRange nextData(std::uint64_t offset) const override
    {
        const auto data = translated([&] { return m_file.nextData(offset); });
        return {data.start, data.end};
    }

    void write(std::uint64_t offset, ByteView bytes) override
    {
        translated([&] { m_file.write(offset, bytes.data(), bytes.size()); });
    }

    void resize(std::uint64_t size) override
    {
        translated([&] { m_file.resize(size); });
    }

    std::uint64_t copyFrom(const Source& source, ByteRange range, std::uint64_t offset) override
    {
        const auto* const other = dynamic_cast<const LocalFile*>(&source);
        if (!other)
            return 0;
        return translated([&] { return m_file.copyFrom(other->m_file, {range.start, range.end}, offset); });
    }

private:
    DiskFile m_file;
};

} // namespace

std::unique_ptr<Storage> openLocalFile(const std::filesystem::path& path, OpenMode mode)
{
    return translated([&] { return std::make_unique<LocalFile>(path, mode); });
}

} // namespace velmora::tools
