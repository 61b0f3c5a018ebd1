#pragma once

#include "diskimage/base/bytes.h"
#include "diskimage/hfs/fork.h"

#include <cstdint>
#include <vector>

namespace velmora::diskimage::hfs
{

/// Which blocks of a volume are in use, while it is edited. Blocks that were in use at first are not handed out again
/// even when released: what is on the volume must stay whole until the changes are.
class BlockMap
{
public:
    /// `bitmap` is that of the volume (TN1150, "Allocation File") and covers its `totalBlocks`.
    BlockMap(Bytes bitmap, std::uint32_t totalBlocks);

    /// Keeps blocks from being handed out whatever the bitmap says of them.
    void protect(const std::vector<Extent>& extents);
    /// Blocks that can be handed out.
    [[nodiscard]] std::uint32_t available() const { return m_available; }
    /// Takes `count` blocks: one run when there is one, else the first free ones. Throws DiskImageError saying how much
    /// is missing.
    std::vector<Extent> allocate(std::uint64_t count);
    void release(const std::vector<Extent>& extents);

    /// The bitmap as it has become, and the blocks that are free by it.
    [[nodiscard]] const Bytes& bitmap() const { return m_used; }
    [[nodiscard]] std::uint32_t freeBlocks() const;
    /// The changes are on the volume: what was released can be handed out.
    void settle();

private:
    [[nodiscard]] Extent nextRun(std::uint32_t from) const;
    void countAvailable();

    Bytes m_used;
    Bytes m_busy; ///< used now, or before, or protected
    Bytes m_protected;
    std::uint32_t m_totalBlocks;
    std::uint32_t m_available = 0;
    std::uint32_t m_firstFree = 0; ///< no block before can be handed out
};

} // namespace velmora::diskimage::hfs
