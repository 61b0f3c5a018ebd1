#pragma once

#include "diskimage/base/error.h"
#include "diskimage/base/storage.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace velmora::diskimage
{

/// A disk or file of which only some ranges hold data; whoever reads outside of them fails. `disk` outlives it.
class SparseDisk : public Source
{
public:
    SparseDisk(const Source& disk, std::vector<ByteRange> data) : m_disk(disk), m_data(std::move(data)) {}

    [[nodiscard]] std::uint64_t size() const override { return m_disk.size(); }
    void read(std::uint64_t offset, MutableByteView out) const override
    {
        const ByteRange data = nextData(offset);
        if (data.start != offset || data.end < offset + out.size())
            throw DiskImageError("a hole was read at " + std::to_string(offset));
        m_disk.read(offset, out);
    }
    [[nodiscard]] ByteRange nextData(std::uint64_t offset) const override
    {
        for (const ByteRange& range : m_data) {
            if (range.end > offset)
                return {std::max(range.start, offset), range.end};
        }
        return {size(), size()};
    }

private:
    const Source& m_disk;
    std::vector<ByteRange> m_data;
};

} // namespace velmora::diskimage
