#include "diskimage/hfs/volume.h"

#include "diskimage/hfs/format.h"
#include "diskimage/hfs/volume_records.h"

#include <algorithm>

namespace velmora::diskimage::hfs
{

struct Volume::Impl {
    VolumeInfo info{};
    NameOrder order = NameOrder::caseFolding;
    Entry root{};
};

Volume::Volume(const Source& source) : m_impl(std::make_unique<Impl>())
{
    const auto place = locateVolume(source);
    const std::shared_ptr<const Source> volume = sliceOf(source, place.offset, place.length);
    const auto records = readVolumeRecords(volume);
    m_impl->order = records.order;
    m_impl->root = buildEntries(records, volume);
    const auto& header = records.header;
    m_impl->info = {.name = m_impl->root.name,
                    .caseSensitive = records.order == NameOrder::binary,
                    .blockSize = header.blockSize,
                    .totalBlocks = header.totalBlocks,
                    .freeBlocks = header.freeBlocks,
                    .fileCount = header.fileCount,
                    .folderCount = header.folderCount,
                    .created = unixFromDate(header.createDate),
                    .identifier = std::uint64_t{header.finderInfo[6]} << 32 | header.finderInfo[7]};
}

Volume::~Volume() = default;
Volume::Volume(Volume&&) noexcept = default;
Volume& Volume::operator=(Volume&&) noexcept = default;

const VolumeInfo& Volume::info() const
{
    return m_impl->info;
}

const Entry& Volume::root() const
{
    return m_impl->root;
}

const Entry* Volume::find(std::string_view path) const
{
    const Entry* entry = &m_impl->root;
    while (!path.empty() && entry != nullptr) {
        const auto slash = std::min(path.find('/'), path.size());
        const auto name = path.substr(0, slash);
        path.remove_prefix(std::min(slash + 1, path.size()));
        if (!name.empty()) {
            entry = findChild(*entry, name, m_impl->order);
        }
    }
    return entry;
}

} // namespace velmora::diskimage::hfs
