#include "diskimage/hfs/writer.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/content.h"
#include "diskimage/hfs/fork_copy.h"
#include "diskimage/hfs/format.h"
#include "diskimage/hfs/geometry.h"
#include "diskimage/hfs/tree_builder.h"
#include "diskimage/hfs/volume_header.h"

#include <openssl/evp.h>

#include <algorithm>

namespace velmora::diskimage::hfs
{
namespace
{

std::uint64_t contentIdentifier(const RecordList& catalog, const RecordList& attributes)
{
    std::array<std::uint8_t, EVP_MAX_MD_SIZE> digest{};
    const auto context = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (!context || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1 ||
        EVP_DigestUpdate(context.get(), catalog.bytes().data(), catalog.bytes().size()) != 1 ||
        EVP_DigestUpdate(context.get(), attributes.bytes().data(), attributes.bytes().size()) != 1 ||
        EVP_DigestFinal_ex(context.get(), digest.data(), nullptr) != 1) {
        throw DiskImageError("Cannot compute a checksum for the volume's identifier.");
    }
    return std::max<std::uint64_t>(getBE64(digest.data()), 1); // 0 means that there is none
}

/// Where a volume gets its identifier from when none is given: everything that describes the content but its bytes.
std::uint64_t identifierOf(const VolumeOptions& options, const RecordList& catalog, const RecordList& attributes)
{
    return options.identifier != 0 ? options.identifier : contentIdentifier(catalog, attributes);
}

Content listRoot(const Entry& root)
{
    if (root.kind != EntryKind::folder) {
        throw DiskImageError("The root of a volume is not a folder.");
    }
    return listContent(root);
}

/// A tree of the content with the records that tell how much room it needs.
struct PreparedContent {
    PreparedContent(const Entry& root, const VolumeOptions& options)
        : content(listRoot(root)),
          catalog(encodeCatalog(content, options.created)),
          attributes(encodeAttributes(content))
    {
    }
    [[nodiscard]] Needs needs() const { return {content, catalog, attributes}; }

    Content content;
    RecordList catalog;
    RecordList attributes;
};

/// Fills one volume whose places are known.
class VolumeWriter
{
public:
    VolumeWriter(Storage& volume, const Geometry& geometry) : m_volume(volume), m_geometry(geometry) {}

    /// Returns the checksum of all forks.
    std::uint32_t writeContents(const Content& content, const std::function<bool()>& stopped)
    {
        NewForkCopy forks(m_volume, stopped);
        for (std::size_t i = 0; i < content.size(); ++i) {
            const auto& item = content[i];
            if (item.data.count > 0) {
                forks.copy(*openDataOf(*item.entry), dataSizeOf(*item.entry), pathOfItem(content, i),
                           placeOf(item.data));
            }
            if (item.resource.count > 0) {
                forks.copy(*item.entry->openResource(), resourceSizeOf(*item.entry),
                           pathOfItem(content, i) + " (resource fork)", placeOf(item.resource));
            }
            for (const auto& attribute : item.attributes) {
                if (attribute.fork.count > 0) {
                    m_volume.write(placeOf(attribute.fork), *attribute.value);
                }
            }
        }
        return forks.checksum();
    }

    void writeTree(const RecordList& records, const SpecialFile& file, std::uint16_t maxKeyLength,
                   std::uint8_t keyCompareType, std::uint32_t attributes)
    {
        const auto start = std::uint64_t{file.extent.start} * m_geometry.blockSize;
        const auto totalNodes = std::uint64_t{file.extent.count} * m_geometry.blockSize / file.nodeSize;
        hfs::writeTree(records, shapeTree(records, file.nodeSize),
                       {file.nodeSize, maxKeyLength, keyCompareType, attributes, file.clumpSize},
                       static_cast<std::uint32_t>(totalNodes), [&](std::uint32_t number, ByteView node) {
                           m_volume.write(start + std::uint64_t{number} * file.nodeSize, node);
                       });
    }

    /// Everything is in use from the start on, and the last block.
    void writeBitmap()
    {
        constexpr std::uint64_t pieceSize = 1 << 20;
        const auto start = std::uint64_t{m_geometry.bitmap.extent.start} * m_geometry.blockSize;
        const std::uint64_t used = m_geometry.usedBlocks - 1;
        for (std::uint64_t offset = 0; offset < used / 8; offset += pieceSize) {
            m_volume.write(start + offset, Bytes(std::min(pieceSize, used / 8 - offset), 0xFF));
        }
        const std::uint64_t last = m_geometry.totalBlocks - 1;
        for (const auto byte : {used / 8, last / 8}) {
            std::uint8_t bits = byte == used / 8 ? static_cast<std::uint8_t>(0xFF00 >> used % 8) : std::uint8_t{0};
            if (byte == last / 8) {
                bits = static_cast<std::uint8_t>(bits | 0x80 >> last % 8);
            }
            m_volume.write(start + byte, ByteView(&bits, 1));
        }
    }

    void writeHeaders(const VolumeHeader& header)
    {
        const auto bytes = encodeVolumeHeader(header);
        m_volume.write(volumeHeaderOffset, bytes);
        m_volume.write(m_volume.size() - alternateHeaderFromEnd, bytes);
    }

private:
    /// The volume's byte at which an extent begins.
    [[nodiscard]] std::uint64_t placeOf(Extent extent) const
    {
        return std::uint64_t{extent.start} * m_geometry.blockSize;
    }

    Storage& m_volume;
    const Geometry& m_geometry;
};

ForkData specialFork(const SpecialFile& file, std::uint32_t blockSize)
{
    return contiguousFork(std::uint64_t{file.extent.count} * blockSize, file.extent, file.clumpSize);
}

VolumeHeader headerOf(const Geometry& geometry, const Content& content, const VolumeOptions& options,
                      std::uint64_t identifier)
{
    constexpr std::uint32_t userClump = 65536;
    const auto files = static_cast<std::uint32_t>(std::count_if(
        content.begin(), content.end(), [](const auto& item) { return item.entry->kind != EntryKind::folder; }));
    VolumeHeader header;
    header.attributes = volumeUnmounted | volumeUnusedNodesZeroed;
    header.lastMountedVersion = mountedByMacOs;
    header.createDate = dateFromUnix(options.created);
    header.modifyDate = header.createDate;
    header.checkedDate = header.createDate;
    header.fileCount = files;
    header.folderCount = static_cast<std::uint32_t>(content.size()) - 1 - files;
    header.blockSize = geometry.blockSize;
    header.totalBlocks = geometry.totalBlocks;
    header.freeBlocks = geometry.totalBlocks - geometry.usedBlocks;
    header.nextAllocation = geometry.usedBlocks - 1;
    header.resourceClumpSize = std::max(userClump, geometry.blockSize);
    header.dataClumpSize = header.resourceClumpSize;
    header.nextCatalogId = idOfItem(content.size());
    header.writeCount = 1;
    header.encodingsBitmap = 1; // names are hinted as MacRoman everywhere
    header.finderInfo[6] = static_cast<std::uint32_t>(identifier >> 32);
    header.finderInfo[7] = static_cast<std::uint32_t>(identifier);
    header.allocationFile = specialFork(geometry.bitmap, geometry.blockSize);
    header.extentsFile = specialFork(geometry.extents, geometry.blockSize);
    header.catalogFile = specialFork(geometry.catalog, geometry.blockSize);
    header.attributesFile = specialFork(geometry.attributes, geometry.blockSize);
    return header;
}

void setIds(Entry& root, const Content& content)
{
    std::vector<Entry*> entries(content.size(), &root);
    root.id = rootFolderId;
    for (std::size_t i = 1; i < content.size(); ++i) {
        entries[i] = &entries[content[i].parent]->children[content[i].place];
        entries[i]->id = idOfItem(i);
    }
}

} // namespace

std::uint64_t requiredBytes(const Entry& root, const VolumeOptions& options)
{
    const PreparedContent prepared(root, options);
    return smallestVolume(prepared.needs(), options.clumps);
}

std::uint32_t writeVolume(Storage& volume, Entry& root, const VolumeOptions& options)
{
    PreparedContent prepared(root, options);
    const auto geometry = layOut(prepared.needs(), options.clumps, volume.size());
    const auto identifier = identifierOf(options, prepared.catalog, prepared.attributes);
    placeForks(prepared.content, geometry.blockSize, geometry.firstDataBlock);
    prepared.catalog = {}; // not both of them at a time
    prepared.catalog = encodeCatalog(prepared.content, options.created);
    prepared.attributes = encodeAttributes(prepared.content);

    VolumeWriter writer(volume, geometry);
    const auto checksum = writer.writeContents(prepared.content, options.stopped);
    writer.writeTree({}, geometry.extents, extentsMaxKeyLength, 0, treeBigKeys);
    writer.writeTree(prepared.attributes, geometry.attributes, attributesMaxKeyLength, 0,
                     treeBigKeys | treeVariableIndexKeys);
    writer.writeTree(prepared.catalog, geometry.catalog, catalogMaxKeyLength, compareCaseFolding,
                     treeBigKeys | treeVariableIndexKeys);
    writer.writeBitmap();
    // The headers come last: until then nobody takes the unfinished volume for one.
    writer.writeHeaders(headerOf(geometry, prepared.content, options, identifier));
    setIds(root, prepared.content);
    return checksum;
}

} // namespace velmora::diskimage::hfs
