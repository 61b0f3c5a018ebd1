#include "diskimage/hfs/block_map.h"

#include "diskimage/base/error.h"

#include <algorithm>
#include <bit>

namespace velmora::diskimage::hfs
{
namespace
{

bool isSet(const Bytes& bits, std::uint32_t i)
{
    return (bits[i / 8] & 0x80 >> i % 8) != 0;
}

void setBits(Bytes& bits, const Extent& extent, bool value)
{
    for (std::uint32_t i = extent.start; i < extent.start + extent.count; ++i) {
        const auto mask = static_cast<std::uint8_t>(0x80 >> i % 8);
        bits[i / 8] = static_cast<std::uint8_t>(value ? bits[i / 8] | mask : bits[i / 8] & ~mask);
    }
}

std::uint32_t countClear(const Bytes& bits, std::uint32_t count)
{
    std::uint32_t set = 0;
    for (std::uint32_t i = 0; i < count / 8; ++i) {
        set += static_cast<std::uint32_t>(std::popcount(bits[i]));
    }
    for (auto i = count / 8 * 8; i < count; ++i) {
        set += isSet(bits, i) ? 1U : 0U;
    }
    return count - set;
}

} // namespace

BlockMap::BlockMap(Bytes bitmap, std::uint32_t totalBlocks)
    : m_used(std::move(bitmap)), m_busy(m_used), m_protected(m_used.size()), m_totalBlocks(totalBlocks)
{
    countAvailable();
}

void BlockMap::protect(const std::vector<Extent>& extents)
{
    for (const auto& extent : extents) {
        setBits(m_protected, extent, true);
        setBits(m_busy, extent, true);
    }
    countAvailable();
}

void BlockMap::countAvailable()
{
    m_available = countClear(m_busy, m_totalBlocks);
}

/// The first run of blocks that can be handed out at or behind `from`; count 0 when there is none.
Extent BlockMap::nextRun(std::uint32_t from) const
{
    auto start = from;
    while (start < m_totalBlocks && isSet(m_busy, start)) {
        // Whole bytes of used blocks are the rule.
        start += start % 8 == 0 && m_busy[start / 8] == 0xFF ? 8U : 1U;
    }
    auto end = std::min(start, m_totalBlocks);
    while (end < m_totalBlocks && !isSet(m_busy, end)) {
        ++end;
    }
    return {start, end - std::min(start, end)};
}

std::vector<Extent> BlockMap::allocate(std::uint64_t count)
{
    if (count > m_available) {
        throw DiskImageError("The volume has no room: " + std::to_string(count - m_available) + " of " +
                             std::to_string(count) + " blocks are missing.");
    }
    std::vector<Extent> taken;
    if (count == 0) {
        return taken;
    }
    const auto wanted = static_cast<std::uint32_t>(count);
    m_firstFree = nextRun(m_firstFree).start;
    for (auto run = nextRun(m_firstFree); run.count > 0; run = nextRun(run.start + run.count)) {
        if (run.count >= wanted) {
            taken.push_back({run.start, wanted});
            break;
        }
    }
    if (taken.empty()) {
        auto missing = wanted;
        for (auto run = nextRun(m_firstFree); missing > 0; run = nextRun(run.start + run.count)) {
            taken.push_back({run.start, std::min(run.count, missing)});
            missing -= taken.back().count;
        }
    }
    for (const auto& extent : taken) {
        setBits(m_used, extent, true);
        setBits(m_busy, extent, true);
    }
    m_available -= wanted;
    return taken;
}

void BlockMap::release(const std::vector<Extent>& extents)
{
    for (const auto& extent : extents) {
        setBits(m_used, extent, false);
    }
}

std::uint32_t BlockMap::freeBlocks() const
{
    return countClear(m_used, m_totalBlocks);
}

void BlockMap::settle()
{
    m_busy = m_used;
    for (std::size_t i = 0; i < m_busy.size(); ++i) {
        m_busy[i] |= m_protected[i];
    }
    m_firstFree = 0;
    countAvailable();
}

} // namespace velmora::diskimage::hfs
