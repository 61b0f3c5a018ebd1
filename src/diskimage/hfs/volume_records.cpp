#include "diskimage/hfs/volume_records.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/catalog_records.h"
#include "diskimage/hfs/format.h"

namespace velmora::diskimage::hfs
{
namespace
{

/// A record that comes too early would hide others from whoever searches, and one name twice would let one file
/// overwrite another.
void checkOrder(const VolumeRecords& records)
{
    CatalogKey previous;
    for (std::size_t i = 0; i < records.catalog.size(); ++i) {
        auto key = readCatalogKey(records.catalog.key(i));
        const bool isBehind =
            i == 0 || key.parentId > previous.parentId ||
            (key.parentId == previous.parentId && compareNames(previous.name, key.name, records.order) < 0);
        if (!isBehind) {
            throw DiskImageError("The catalog is damaged: \"" + posixName(key.name) + "\" is out of order.");
        }
        previous = std::move(key);
    }
}

} // namespace

bool VolumeRecords::isJournaled() const
{
    return (header.attributes & volumeJournaled) != 0;
}

std::vector<Extent> catalogExtents(const VolumeRecords& records)
{
    return resolveFork(records.header.catalogFile, catalogFileId, ForkType::data, records.overflow, records.header,
                       "the catalog");
}

std::vector<Extent> attributesExtents(const VolumeRecords& records)
{
    return resolveFork(records.header.attributesFile, attributesFileId, ForkType::data, records.overflow,
                       records.header, "the attributes tree");
}

VolumeRecords readVolumeRecords(const std::shared_ptr<const Source>& volume)
{
    VolumeRecords records;
    records.header = findVolumeHeader(*volume);
    const auto& header = records.header;
    const auto open = [&](const ForkData& fork, std::vector<Extent> extents) {
        return openFork(volume, header.blockSize, std::move(extents), fork.logicalSize);
    };

    // The extents file itself never has extents elsewhere.
    const auto extents = open(header.extentsFile, resolveFork(header.extentsFile, extentsFileId, ForkType::data, {},
                                                              header, "the extents tree"));
    records.extentsHeader = readTreeHeader(*extents, "extents tree");
    records.overflow = readOverflow(readLeaves(*extents, records.extentsHeader, "extents tree"));

    const auto catalog = open(header.catalogFile, catalogExtents(records));
    records.catalogHeader = readTreeHeader(*catalog, "catalog");
    if (header.signature == signatureHfsx && records.catalogHeader.keyCompareType == compareBinary) {
        records.order = NameOrder::binary;
    }
    records.catalog = readLeaves(*catalog, records.catalogHeader, "catalog");
    checkOrder(records);

    if (header.attributesFile.totalBlocks > 0) {
        const auto attributes = open(header.attributesFile, attributesExtents(records));
        records.attributesHeader = readTreeHeader(*attributes, "attributes tree");
        records.attributes = readLeaves(*attributes, records.attributesHeader, "attributes tree");
    }
    return records;
}

} // namespace velmora::diskimage::hfs
