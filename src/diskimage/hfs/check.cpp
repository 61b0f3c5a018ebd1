#include "diskimage/hfs/check.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/check_blocks.h"
#include "diskimage/hfs/check_catalog.h"
#include "diskimage/hfs/check_tree.h"
#include "diskimage/hfs/format.h"
#include "diskimage/hfs/volume_header.h"

// The checker trusts nothing that the volume says twice: it computes each number from what it counts and compares. It
// shares the decoding of records with the reader, and no arithmetic with the writer.
namespace velmora::diskimage::hfs
{
namespace
{

class VolumeChecker
{
public:
    VolumeChecker(const Source& volume, CheckReport& report)
        : m_volume(volume),
          m_shared(sliceOf(volume, 0, volume.size())),
          m_report(report),
          m_header(findVolumeHeader(volume)),
          m_blocks(m_header, report)
    {
    }

    void check()
    {
        checkHeader();
        checkAlternateHeader();
        const auto extents = readTree(TreeKind::extents, m_header.extentsFile, extentsFileId);
        if (extents) {
            m_overflow = readOverflow(*extents);
            m_blocks.setOverflow(m_overflow);
        }
        m_blocks.addBadBlocks();
        addSpecialForks();
        const auto catalog = readTree(TreeKind::catalog, m_header.catalogFile, catalogFileId);
        const auto attributes = m_header.attributesFile.totalBlocks == 0
                                    ? std::optional(RecordList())
                                    : readTree(TreeKind::attributes, m_header.attributesFile, attributesFileId);
        if (!extents || !catalog || !attributes) {
            m_report.add("The files could not be checked because a tree is damaged.");
            return;
        }
        checkCatalog(*catalog, *attributes, m_header, m_blocks, m_report);
        m_blocks.finish(m_volume);
    }

private:
    void expect(bool holds, const char* fault) { m_report.expect(holds, fault); }

    void checkHeader()
    {
        const auto own = readVolumeHeader(m_volume.read(volumeHeaderOffset, volumeHeaderSize).data());
        const auto& header = m_header;
        const bool isPlain = own.signature == signatureHfsPlus && own.version == 4;
        const bool isExtended = own.signature == signatureHfsx && own.version == 5;
        expect(isPlain || isExtended, "The volume header has a wrong signature or version.");
        expect(own.blockSize == header.blockSize && own.totalBlocks == header.totalBlocks,
               "The volume header has a wrong block size or number of blocks.");
        expect(header.totalBlocks == m_volume.size() / header.blockSize, "The volume does not fill its place.");
        expect((header.attributes & volumeUnmounted) != 0, "The volume was not cleanly unmounted.");
        expect((header.attributes & volumeInconsistent) == 0, "The volume is marked as inconsistent.");
        expect(header.nextAllocation < header.totalBlocks, "The next allocation lies outside the volume.");
        expect(header.nextCatalogId >= firstUserId, "The next number for a file is one of the file system's own.");
        expect(header.resourceClumpSize != 0 && header.resourceClumpSize % header.blockSize == 0,
               "The clump size for resource forks is wrong.");
        expect(header.dataClumpSize != 0 && header.dataClumpSize % header.blockSize == 0,
               "The clump size for data forks is wrong.");
        const auto& catalog = header.catalogFile;
        const auto quarter = std::uint64_t{header.totalBlocks} * header.blockSize / 4;
        expect(catalog.clumpSize != 0 &&
                   (catalog.clumpSize <= quarter ||
                    catalog.clumpSize == std::uint64_t{catalog.extents[0].count} * header.blockSize),
               "The clump size of the catalog is wrong.");
        expect(header.attributesFile.totalBlocks == 0 || header.attributesFile.clumpSize != 0,
               "The clump size of the attributes tree is wrong.");
    }

    void checkAlternateHeader()
    {
        const auto bytes = m_volume.read(m_volume.size() - alternateHeaderFromEnd, volumeHeaderSize);
        const auto copy = readVolumeHeader(bytes.data());
        expect(copy.signature == m_header.signature && copy.version == m_header.version,
               "The alternate volume header is missing.");
        expect(copy.createDate == m_header.createDate, "The alternate volume header has another creation date.");
        expect(copy.allocationFile == m_header.allocationFile && copy.extentsFile == m_header.extentsFile &&
                   copy.catalogFile == m_header.catalogFile && copy.attributesFile == m_header.attributesFile &&
                   copy.startupFile == m_header.startupFile,
               "The alternate volume header has other places for the special files.");
        expect(copy.fileCount == m_header.fileCount && copy.folderCount == m_header.folderCount &&
                   copy.freeBlocks == m_header.freeBlocks && copy.totalBlocks == m_header.totalBlocks &&
                   copy.nextCatalogId == m_header.nextCatalogId,
               "The alternate volume header has other counts.");
    }

    void addSpecialForks()
    {
        const struct {
            const ForkData& fork;
            std::uint32_t id;
            const char* name;
        } special[] = {{m_header.allocationFile, allocationFileId, "The bitmap"},
                       {m_header.extentsFile, extentsFileId, "The extents tree"},
                       {m_header.catalogFile, catalogFileId, "The catalog"},
                       {m_header.attributesFile, attributesFileId, "The attributes tree"},
                       {m_header.startupFile, startupFileId, "The startup file"}};
        for (const auto& [fork, id, name] : special) {
            m_blocks.addFork(fork, id, ForkType::data, name);
            if (id != startupFileId && fork.logicalSize != std::uint64_t{fork.totalBlocks} * m_header.blockSize) {
                m_report.add(std::string(name) + " does not fill its blocks.");
            }
        }
        const bool extentsOverflow = m_overflow.lower_bound({extentsFileId, ForkType::data, 0}) !=
                                     m_overflow.lower_bound({extentsFileId + 1, ForkType::data, 0});
        expect(!extentsOverflow, "The extents tree has extents that only it would tell of.");
    }

    std::optional<RecordList> readTree(TreeKind kind, const ForkData& fork, std::uint32_t id)
    {
        try {
            const auto name = nameOfTree(kind);
            const auto file =
                openFork(m_shared, m_header.blockSize,
                         resolveFork(fork, id, ForkType::data, m_overflow, m_header, "the " + name), fork.logicalSize);
            const auto keyCompareType = readTreeHeader(*file, name).keyCompareType;
            const bool isBinary = m_header.signature == signatureHfsx && keyCompareType == compareBinary;
            const TreeExpectation expectation{.kind = kind,
                                              .order = isBinary ? NameOrder::binary : NameOrder::caseFolding,
                                              .keyCompareType = kind != TreeKind::catalog ? std::uint8_t{0}
                                                                : isBinary                ? compareBinary
                                                                                          : compareCaseFolding,
                                              .clumpSize = fork.clumpSize,
                                              // The flag speaks of the catalog alone.
                                              .unusedNodesAreZero =
                                                  kind == TreeKind::catalog &&
                                                  (m_header.attributes & volumeUnusedNodesZeroed) != 0};
            return checkTree(*file, expectation, m_report);
        } catch (const DiskImageError& error) {
            m_report.add(error.what());
            return std::nullopt;
        }
    }

    const Source& m_volume;
    std::shared_ptr<const Source> m_shared;
    CheckReport& m_report;
    VolumeHeader m_header;
    OverflowExtents m_overflow{};
    BlockChecker m_blocks;
};

} // namespace

std::vector<std::string> checkVolume(const Source& volume, std::size_t limit)
{
    CheckReport report(limit);
    try {
        VolumeChecker(volume, report).check();
    } catch (const DiskImageError& error) {
        try {
            report.add(error.what());
        } catch (const CheckReport::Full&) { // the list is long enough without it
        }
    } catch (const CheckReport::Full&) { // as was asked
    }
    return report.take();
}

} // namespace velmora::diskimage::hfs
