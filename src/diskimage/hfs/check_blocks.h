#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/check_report.h"
#include "diskimage/hfs/fork.h"
#include "diskimage/hfs/overflow.h"
#include "diskimage/hfs/volume_header.h"

#include <cstdint>
#include <deque>
#include <set>
#include <string>
#include <vector>

namespace velmora::diskimage::hfs
{

/// Collects who owns which blocks, and compares it with the bitmap at the end.
class BlockChecker
{
public:
    BlockChecker(const VolumeHeader& header, CheckReport& report);

    /// The records of the extents tree; to be set before forks that may use them are added.
    void setOverflow(OverflowExtents overflow) { m_overflow = std::move(overflow); }

    /// Checks a fork's numbers and extents and takes its blocks. `owner` is for messages.
    void addFork(const ForkData& fork, std::uint32_t fileId, ForkType type, const std::string& owner);
    /// The same with the records that continue it given, none of which may be left over.
    void addFork(const ForkData& fork, std::uint32_t fileId, ForkType type, const std::string& owner,
                 const OverflowExtents& overflow);
    /// Takes what the extents tree says of damaged places on the disk.
    void addBadBlocks();

    /// Overflow records that belong to no fork; overlaps; the bitmap, whose fork has been added.
    void finish(const Source& volume);

private:
    struct Owned {
        Extent extent;
        const std::string* owner; ///< in m_owners
    };

    void own(const Extent& extent, const std::string& owner);
    bool take(const Extent& extent, const std::string& owner);
    void compareBitmap(const Source& volume);

    const VolumeHeader& m_header;
    CheckReport& m_report;
    std::uint32_t m_endOfUsable; ///< first block behind those that files may have
    OverflowExtents m_overflow{};
    std::set<OverflowKey> m_overflowUsed{};
    std::deque<std::string> m_owners{}; ///< a fork can have very many extents
    std::vector<Owned> m_owned{};
};

} // namespace velmora::diskimage::hfs
