#pragma once

#include "diskimage/base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmora::diskimage::hfs
{

/// Records of a B-tree's leaves in one buffer: hundreds of thousands of them without an allocation each.
class RecordList
{
public:
    /// Adds a record. `key` begins with its 16-bit length; both parts fit a node, so 16 bits are enough.
    void add(ByteView key, ByteView data)
    {
        m_places.push_back(
            {m_bytes.size(), static_cast<std::uint16_t>(key.size()), static_cast<std::uint16_t>(data.size())});
        append(m_bytes, key);
        append(m_bytes, data);
    }

    /// Takes the memory for that many records and bytes at once: growing step by step takes half as much again.
    void reserve(std::size_t records, std::size_t bytes)
    {
        m_places.reserve(records);
        m_bytes.reserve(bytes);
    }

    [[nodiscard]] std::size_t size() const { return m_places.size(); }
    /// The key with its length field.
    [[nodiscard]] ByteView key(std::size_t i) const
    {
        return ByteView(m_bytes).subspan(m_places[i].offset, m_places[i].keySize);
    }
    [[nodiscard]] ByteView data(std::size_t i) const
    {
        return ByteView(m_bytes).subspan(m_places[i].offset + m_places[i].keySize, m_places[i].dataSize);
    }
    /// All records behind one another.
    [[nodiscard]] ByteView bytes() const { return m_bytes; }

private:
    struct Place {
        std::size_t offset;
        std::uint16_t keySize;
        std::uint16_t dataSize;
    };
    Bytes m_bytes;
    std::vector<Place> m_places;
};

} // namespace velmora::diskimage::hfs
