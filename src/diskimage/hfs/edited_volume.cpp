#include "diskimage/hfs/edited_volume.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/fork_copy.h"
#include "diskimage/hfs/format.h"
#include "diskimage/hfs/journal.h"

#include <limits>
#include <utility>

namespace velmora::diskimage::hfs
{
namespace
{

constexpr std::uint32_t newAttributesClump = 65536;

template <typename Base>
auto openVolume(Base& storage)
{
    const auto place = locateVolume(storage);
    return sliceOf(storage, place.offset, place.length);
}

Bytes readBitmap(const std::shared_ptr<const Source>& view, const VolumeHeader& header,
                 const std::vector<Extent>& extents)
{
    const auto size = ceilDivide(header.totalBlocks, 8);
    if (header.allocationFile.logicalSize < size) {
        throw DiskImageError("The volume's bitmap is too short for its blocks.");
    }
    return openFork(view, header.blockSize, extents, size)->read(0, static_cast<std::size_t>(size));
}

/// Refuses records that contradict each other.
VolumeRecords checkedRecords(const std::shared_ptr<const Source>& view)
{
    auto records = readVolumeRecords(view);
    (void)buildEntries(records, view);
    return records;
}

} // namespace

EditedVolume::EditedVolume(Storage& storage)
    : m_volume(openVolume(storage)),
      m_view(openVolume(std::as_const(storage))),
      m_records(checkedRecords(m_view)),
      m_catalog(m_records.catalog, m_records.order, m_records.header.signature == signatureHfsx),
      m_attributes(readAttributeMap(m_records.attributes)),
      m_bitmapExtents(resolveFork(m_records.header.allocationFile, allocationFileId, ForkType::data, m_records.overflow,
                                  m_records.header, "the bitmap")),
      m_blocks(readBitmap(m_view, m_records.header, m_bitmapExtents), m_records.header.totalBlocks),
      m_extentsTree{m_records.header.extentsFile, m_records.extentsHeader,
                    resolveFork(m_records.header.extentsFile, extentsFileId, ForkType::data, {}, m_records.header,
                                "the extents tree")},
      m_catalogTree{m_records.header.catalogFile, m_records.catalogHeader, catalogExtents(m_records)},
      m_attributesTree{m_records.header.attributesFile, m_records.attributesHeader, attributesExtents(m_records)}
{
    forgetRecords();
    checkState();
    protectBlocks();
}

/// The maps hold all of them.
void EditedVolume::forgetRecords()
{
    m_records.catalog = {};
    m_records.attributes = {};
}

void EditedVolume::checkState() const
{
    const auto& header = m_records.header;
    if ((header.attributes & volumeUnmounted) == 0 || (header.attributes & volumeInconsistent) != 0) {
        throw DiskImageError("The volume was not cleanly unmounted and must be checked before it can be changed.");
    }
    if (hasPendingJournal(*m_view, header)) {
        throw DiskImageError("The volume's journal holds changes that are not applied yet; it cannot be changed.");
    }
}

std::vector<Extent> EditedVolume::reservedBlocks() const
{
    const auto& header = m_records.header;
    const auto front = static_cast<std::uint32_t>(ceilDivide(volumeHeaderOffset + volumeHeaderSize, header.blockSize));
    const auto back = static_cast<std::uint32_t>(ceilDivide(alternateHeaderFromEnd, header.blockSize));
    if (header.totalBlocks <= front + back) {
        throw DiskImageError("The volume is too small to hold anything.");
    }
    return {{0, front}, {header.totalBlocks - back, back}};
}

/// A bitmap that wrongly calls a block free must not lead to overwriting what lies there.
void EditedVolume::protectBlocks()
{
    auto extents = reservedBlocks();
    const auto add = [&](const std::vector<Extent>& more) { extents.insert(extents.end(), more.begin(), more.end()); };
    for (const auto* list :
         {&m_bitmapExtents, &m_extentsTree.extents, &m_catalogTree.extents, &m_attributesTree.extents}) {
        add(*list);
    }
    m_blocks.protect(extents);
}

Entry EditedVolume::entries()
{
    m_records.catalog = m_catalog.encode();
    m_records.attributes = encodeAttributeMap(m_attributes);
    auto root = buildEntries(m_records, m_view);
    forgetRecords();
    return root;
}

void EditedVolume::requireRoom(const Content& content) const
{
    const auto blockSize = m_records.header.blockSize;
    const auto nodeSize =
        m_attributesTree.header.nodeSize != 0 ? m_attributesTree.header.nodeSize : newAttributesNodeSize;
    const auto needed = countForkBlocks(content, blockSize, nodeSize);
    if (needed > m_blocks.available()) {
        throw DiskImageError("The volume has no room for \"" + content[0].entry->name + "\": " +
                             std::to_string((needed - m_blocks.available()) * blockSize) + " bytes are missing.");
    }
}

ForkData EditedVolume::storeFork(const Source& source, std::uint64_t size, const std::string& path, CatalogId id,
                                 ForkType type)
{
    const auto blockSize = m_records.header.blockSize;
    const auto extents = m_blocks.allocate(ceilDivide(size, blockSize));
    copyToFork(source, size, path, *m_volume, blockSize, extents);
    ForkData fork;
    fork.logicalSize = size;
    storeExtents(fork, extents, id, type, m_records.overflow);
    return fork;
}

Bytes EditedVolume::storeItem(const Content& content, std::size_t index, CatalogId id)
{
    const auto& item = content[index];
    const auto path = pathOfItem(content, index);
    ItemPlacement placement{.id = id, .hasAttributes = !item.attributes.empty()};
    if (const auto size = dataSizeOf(*item.entry); size > 0) {
        placement.data = storeFork(*openDataOf(*item.entry), size, path, id, ForkType::data);
    }
    if (const auto size = resourceSizeOf(*item.entry); size > 0) {
        placement.resource =
            storeFork(*item.entry->openResource(), size, path + " (resource fork)", id, ForkType::resource);
    }
    storeAttributes(item, path, id);
    return encodeItem(*item.entry, placement);
}

void EditedVolume::storeAttributes(const ContentItem& item, const std::string& path, CatalogId id)
{
    if (!item.attributes.empty()) {
        prepareAttributesTree();
    }
    for (const auto& attribute : item.attributes) {
        const auto size = ownForkSize(attribute, m_attributesTree.header.nodeSize);
        if (size == 0) {
            m_attributes[{id, attribute.name, 0}] = encodeInlineAttribute(*attribute.value);
            continue;
        }
        const auto extents = m_blocks.allocate(ceilDivide(size, m_records.header.blockSize));
        copyToFork(*memoryStorage(*attribute.value), size, path, *m_volume, m_records.header.blockSize, extents);
        // Attributes continue in records of their own tree.
        OverflowExtents more;
        ForkData fork;
        fork.logicalSize = size;
        storeExtents(fork, extents, id, ForkType::data, more);
        m_attributes[{id, attribute.name, 0}] = encodeAttributeFork(fork);
        for (const auto& [key, record] : more) {
            m_attributes[{id, attribute.name, key.startBlock}] = encodeAttributeExtents(record);
        }
    }
}

void EditedVolume::releaseItem(const CatalogItem& item)
{
    const auto& header = m_records.header;
    if (!item.isFolder) {
        for (const auto& [fork, type] :
             {std::pair{item.data, ForkType::data}, std::pair{item.resource, ForkType::resource}}) {
            m_blocks.release(resolveFork(fork, item.id, type, m_records.overflow, header, "a file to be removed"));
            eraseOverflow(m_records.overflow, item.id, type);
        }
    }
    eraseAttributes(item.id);
}

void EditedVolume::eraseAttributes(CatalogId id)
{
    const auto begin = m_attributes.lower_bound({id, {}, 0});
    auto end = begin;
    for (; end != m_attributes.end() && end->first.fileId == id; ++end) {
        m_blocks.release(attributeBlocks(end->second, m_records.header.totalBlocks));
    }
    m_attributes.erase(begin, end);
}

void EditedVolume::prepareAttributesTree()
{
    auto& header = m_attributesTree.header;
    if (header.nodeSize == 0) {
        header.nodeSize = newAttributesNodeSize;
        header.maxKeyLength = attributesMaxKeyLength;
        header.attributes = treeBigKeys | treeVariableIndexKeys;
        header.clumpSize = std::max(newAttributesClump, m_records.header.blockSize);
        m_attributesTree.fork.clumpSize = header.clumpSize;
    }
}

CatalogId EditedVolume::newId()
{
    auto& next = m_records.header.nextCatalogId;
    if (next < firstUserId || next == std::numeric_limits<CatalogId>::max()) {
        throw DiskImageError("The volume has no number left for another file.");
    }
    return next++;
}

void EditedVolume::countItem(bool isFolder, std::uint32_t difference)
{
    (isFolder ? m_records.header.folderCount : m_records.header.fileCount) += difference;
}

void EditedVolume::settleTree(TreeFile& file, ForkData& fork, CatalogId id)
{
    eraseOverflow(m_records.overflow, id, ForkType::data);
    storeExtents(file.fork, file.extents, id, ForkType::data, m_records.overflow);
    file.fork.logicalSize = std::uint64_t{file.fork.totalBlocks} * m_records.header.blockSize;
    fork = file.fork;
}

void EditedVolume::commit(std::uint32_t date)
{
    auto& header = m_records.header;
    for (const auto id : m_touched) {
        auto& record = m_catalog.folder(id)->second;
        putBE32(record.data() + recordModifyDateOffset, date);
        putBE32(record.data() + recordAttributeDateOffset, date);
    }
    m_touched.clear();

    // Everything that can find no room comes first.
    const auto catalog = m_catalog.encode();
    const auto catalogShape = shapeTree(catalog, m_catalogTree.header.nodeSize);
    growTreeFile(m_catalogTree, catalogShape.nodes(), header.blockSize, m_blocks);
    settleTree(m_catalogTree, header.catalogFile, catalogFileId);
    const auto attributes = encodeAttributeMap(m_attributes);
    const bool hasAttributesTree = m_attributesTree.header.nodeSize != 0;
    const auto attributesShape =
        hasAttributesTree ? shapeTree(attributes, m_attributesTree.header.nodeSize) : TreeShape{};
    if (hasAttributesTree) {
        growTreeFile(m_attributesTree, attributesShape.nodes(), header.blockSize, m_blocks);
        settleTree(m_attributesTree, header.attributesFile, attributesFileId);
    }
    const auto overflow = encodeOverflow(m_records.overflow);
    const auto overflowShape = shapeTree(overflow, m_extentsTree.header.nodeSize);
    growTreeFile(m_extentsTree, overflowShape.nodes(), header.blockSize, m_blocks);
    if (m_extentsTree.extents.size() > extentsInRecord) {
        throw DiskImageError("The volume is too fragmented: its extents tree cannot grow any more.");
    }
    settleTree(m_extentsTree, header.extentsFile, extentsFileId);

    header.attributes &= ~volumeUnmounted;
    writeHeader(*m_volume, volumeHeaderOffset);
    writeTreeFile(*m_volume, header.blockSize, m_catalogTree, catalog, catalogShape);
    if (hasAttributesTree) {
        writeTreeFile(*m_volume, header.blockSize, m_attributesTree, attributes, attributesShape);
    }
    writeTreeFile(*m_volume, header.blockSize, m_extentsTree, overflow, overflowShape);
    writeFork(*m_volume, header.blockSize, m_bitmapExtents, 0, m_blocks.bitmap());

    header.attributes |= volumeUnmounted;
    header.lastMountedVersion = mountedByMacOs;
    header.modifyDate = date;
    header.freeBlocks = m_blocks.freeBlocks();
    header.encodingsBitmap |= 1;
    ++header.writeCount;
    writeHeader(*m_volume, volumeHeaderOffset);
    writeHeader(*m_volume, m_volume->size() - alternateHeaderFromEnd);
    m_blocks.settle();
    protectBlocks();
}

void EditedVolume::writeHeader(Storage& volume, std::uint64_t offset) const
{
    volume.write(offset, encodeVolumeHeader(m_records.header));
}

} // namespace velmora::diskimage::hfs
