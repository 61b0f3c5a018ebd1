#include "diskimage/hfs/check_blocks.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"

#include <algorithm>
#include <optional>

namespace velmora::diskimage::hfs
{

BlockChecker::BlockChecker(const VolumeHeader& header, CheckReport& report) : m_header(header), m_report(report)
{
    // Header and alternate header, each with what lies before or behind it, belong to no file.
    const auto front = static_cast<std::uint32_t>(ceilDivide(1536, header.blockSize));
    const auto back = static_cast<std::uint32_t>(ceilDivide(1024, header.blockSize));
    m_endOfUsable = header.totalBlocks - std::min(back, header.totalBlocks);
    own({0, std::min(front, header.totalBlocks)}, "the volume header");
    own({m_endOfUsable, header.totalBlocks - m_endOfUsable}, "the alternate volume header");
}

void BlockChecker::own(const Extent& extent, const std::string& owner)
{
    if (m_owners.empty() || m_owners.back() != owner) {
        m_owners.push_back(owner);
    }
    m_owned.push_back({extent, &m_owners.back()});
}

bool BlockChecker::take(const Extent& extent, const std::string& owner)
{
    if (extent.start == 0 || extent.start >= m_endOfUsable || extent.count > m_endOfUsable - extent.start) {
        m_report.add(owner + " has blocks " + std::to_string(extent.start) + " to " +
                     std::to_string(std::uint64_t{extent.start} + extent.count) + ", which no file may have.");
        return false;
    }
    own(extent, owner);
    return true;
}

void BlockChecker::addFork(const ForkData& fork, std::uint32_t fileId, ForkType type, const std::string& owner)
{
    // The records are looked up among all; those used are noted.
    std::uint64_t blocks = 0;
    OverflowExtents own;
    for (auto record = m_overflow.lower_bound({fileId, type, 0});
         record != m_overflow.end() && record->first.fileId == fileId && record->first.type == type; ++record) {
        own.insert(*record);
        m_overflowUsed.insert(record->first);
        ++blocks;
    }
    addFork(fork, fileId, type, owner, own);
}

void BlockChecker::addFork(const ForkData& fork, std::uint32_t fileId, ForkType type, const std::string& owner,
                           const OverflowExtents& overflow)
{
    std::uint64_t blocks = 0;
    bool hasEnded = false;
    const auto takeRecord = [&](const ExtentRecord& record) {
        for (const auto& extent : record) {
            if (extent.count == 0) {
                hasEnded = true;
                if (extent.start != 0) {
                    m_report.add(owner + " has an empty extent that is not all zero.");
                }
                continue;
            }
            if (hasEnded) {
                m_report.add(owner + " has an empty extent before others.");
                hasEnded = false;
            }
            blocks += extent.count;
            take(extent, owner);
        }
    };
    takeRecord(fork.extents);
    for (const auto& [key, record] : overflow) {
        if (key.startBlock != blocks || key.fileId != fileId || key.type != type) {
            m_report.add(owner + " continues at block " + std::to_string(key.startBlock) + " of its fork instead of " +
                         std::to_string(blocks) + ".");
        }
        takeRecord(record);
    }
    if (blocks != fork.totalBlocks) {
        m_report.add(owner + " claims " + std::to_string(fork.totalBlocks) + " blocks and has " +
                     std::to_string(blocks) + ".");
    }
    if (ceilDivide(fork.logicalSize, m_header.blockSize) > fork.totalBlocks) {
        m_report.add(owner + " has " + std::to_string(fork.logicalSize) + " bytes, more than its blocks hold.");
    }
}

void BlockChecker::addBadBlocks()
{
    for (const auto& [key, record] : m_overflow) {
        if (key.fileId != badBlocksFileId) {
            continue;
        }
        m_overflowUsed.insert(key);
        for (const auto& extent : record) {
            if (extent.count > 0) {
                take(extent, "The list of bad blocks");
            }
        }
    }
}

void BlockChecker::finish(const Source& volume)
{
    for (const auto& [key, record] : m_overflow) {
        if (m_overflowUsed.count(key) == 0) {
            m_report.add("The extents tree has a record for the file with the number " + std::to_string(key.fileId) +
                         ", which has no such fork.");
        }
    }
    std::sort(m_owned.begin(), m_owned.end(),
              [](const auto& a, const auto& b) { return a.extent.start < b.extent.start; });
    const Owned* last = nullptr;
    for (const auto& owned : m_owned) {
        if (last != nullptr && owned.extent.start < last->extent.start + last->extent.count && owned.extent.count > 0) {
            m_report.add(*owned.owner + " and " + *last->owner + " both have block " +
                         std::to_string(owned.extent.start) + ".");
        }
        if (last == nullptr || owned.extent.start + owned.extent.count > last->extent.start + last->extent.count) {
            last = &owned;
        }
    }
    compareBitmap(volume);
}

void BlockChecker::compareBitmap(const Source& volume)
{
    constexpr std::size_t pieceBytes = 1 << 16;
    const auto& fork = m_header.allocationFile;
    const auto size = ceilDivide(m_header.totalBlocks, 8);
    std::unique_ptr<Source> bitmap;
    try {
        const auto shared = std::shared_ptr<const Source>(sliceOf(volume, 0, volume.size()));
        bitmap = openFork(shared, m_header.blockSize,
                          resolveFork(fork, allocationFileId, ForkType::data, m_overflow, m_header, "the bitmap"),
                          fork.logicalSize);
        if (bitmap->size() < size) {
            throw DiskImageError("The bitmap is too short for the volume.");
        }
    } catch (const DiskImageError& error) {
        m_report.add(error.what());
        return;
    }

    std::uint64_t freeBlocks = 0;
    auto owned = m_owned.begin();
    std::optional<std::pair<std::uint32_t, bool>> wrong; // first block of a run of wrong ones, and what is marked
    const auto endRun = [&](std::uint32_t end) {
        if (wrong) {
            m_report.add("The bitmap marks blocks " + std::to_string(wrong->first) + " to " + std::to_string(end - 1) +
                         (wrong->second ? " as used, which nobody has." : " as free, which are in use."));
            wrong.reset();
        }
    };
    for (std::uint64_t offset = 0; offset < size; offset += pieceBytes) {
        const auto piece = bitmap->read(offset, std::min<std::uint64_t>(pieceBytes, size - offset));
        for (std::size_t i = 0; i < piece.size() * 8; ++i) {
            const auto block = static_cast<std::uint32_t>(offset * 8 + i);
            const bool isMarked = (piece[i / 8] & 0x80 >> i % 8) != 0;
            if (offset * 8 + i >= m_header.totalBlocks) {
                endRun(m_header.totalBlocks);
                if (isMarked) {
                    m_report.add("The bitmap marks blocks behind the end of the volume.");
                    break;
                }
                continue;
            }
            freeBlocks += isMarked ? 0 : 1;
            while (owned != m_owned.end() && owned->extent.start + owned->extent.count <= block) {
                ++owned;
            }
            const bool isOwned = owned != m_owned.end() && owned->extent.start <= block;
            if (isMarked == isOwned || (wrong && wrong->second != isMarked)) {
                endRun(block);
            }
            if (isMarked != isOwned && !wrong) {
                wrong = {block, isMarked};
            }
        }
    }
    endRun(m_header.totalBlocks);
    if (freeBlocks != m_header.freeBlocks) {
        m_report.add("The volume header counts " + std::to_string(m_header.freeBlocks) + " free blocks, the bitmap " +
                     std::to_string(freeBlocks) + ".");
    }
}

} // namespace velmora::diskimage::hfs
