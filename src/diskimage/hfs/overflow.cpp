#include "diskimage/hfs/overflow.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"

#include <limits>

namespace velmora::diskimage::hfs
{

static constexpr std::size_t overflowKeySize = 12;

OverflowExtents readOverflow(const RecordList& records)
{
    OverflowExtents overflow;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto key = records.key(i);
        const auto data = records.data(i);
        if (key.size() != overflowKeySize || data.size() < extentRecordSize || (key[2] != 0x00 && key[2] != 0xFF)) {
            throw DiskImageError("A record of the extents tree is damaged.");
        }
        overflow[{getBE32(key.data() + 4), ForkType{key[2]}, getBE32(key.data() + 8)}] = readExtentRecord(data.data());
    }
    return overflow;
}

RecordList encodeOverflow(const OverflowExtents& overflow)
{
    RecordList records;
    for (const auto& [key, extents] : overflow) {
        std::uint8_t keyBytes[overflowKeySize]{};
        putBE16(keyBytes, extentsMaxKeyLength);
        keyBytes[2] = static_cast<std::uint8_t>(key.type);
        putBE32(keyBytes + 4, key.fileId);
        putBE32(keyBytes + 8, key.startBlock);
        std::uint8_t data[extentRecordSize];
        putExtentRecord(data, extents);
        records.add(keyBytes, data);
    }
    return records;
}

std::vector<Extent> resolveFork(const ForkData& fork, std::uint32_t fileId, ForkType type,
                                const OverflowExtents& overflow, const VolumeHeader& header, const std::string& name)
{
    const auto damaged = [&](const std::string& why) {
        return DiskImageError("The places of " + name + " are damaged: " + why + ".");
    };
    std::vector<Extent> extents;
    std::uint32_t blocks = 0;
    const auto take = [&](const ExtentRecord& record) {
        for (const auto& extent : record) {
            if (extent.count == 0 || blocks >= fork.totalBlocks) {
                return;
            }
            if (extent.start >= header.totalBlocks || extent.count > header.totalBlocks - extent.start ||
                extent.count > fork.totalBlocks - blocks) {
                throw damaged("blocks lie outside the volume or exceed the fork");
            }
            extents.push_back(extent);
            blocks += extent.count;
        }
    };
    take(fork.extents);
    for (auto before = blocks; blocks < fork.totalBlocks; before = blocks) {
        const auto record = overflow.find({fileId, type, blocks});
        if (record != overflow.end()) {
            take(record->second);
        }
        if (blocks == before) {
            throw damaged("there are only " + std::to_string(blocks) + " of " + std::to_string(fork.totalBlocks) +
                          " blocks");
        }
    }
    if (fork.totalBlocks > header.totalBlocks) {
        throw damaged("it has more blocks than the volume");
    }
    if (ceilDivide(fork.logicalSize, header.blockSize) > fork.totalBlocks) {
        throw damaged("it has too few blocks for its " + std::to_string(fork.logicalSize) + " bytes");
    }
    return extents;
}

void storeExtents(ForkData& fork, const std::vector<Extent>& extents, std::uint32_t fileId, ForkType type,
                  OverflowExtents& overflow)
{
    fork.totalBlocks = 0;
    fork.extents = {};
    ExtentRecord* record = &fork.extents;
    for (std::size_t i = 0; i < extents.size(); ++i) {
        if (i > 0 && i % extentsInRecord == 0) {
            record = &overflow[{fileId, type, fork.totalBlocks}];
        }
        (*record)[i % extentsInRecord] = extents[i];
        fork.totalBlocks += extents[i].count;
    }
}

void eraseOverflow(OverflowExtents& overflow, std::uint32_t fileId, ForkType type)
{
    overflow.erase(overflow.lower_bound({fileId, type, 0}),
                   overflow.upper_bound({fileId, type, std::numeric_limits<std::uint32_t>::max()}));
}

} // namespace velmora::diskimage::hfs
