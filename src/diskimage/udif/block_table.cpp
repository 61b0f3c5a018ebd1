#include "diskimage/base/error.h"
#include "diskimage/udif/format.h"

#include <algorithm>

namespace velmora::diskimage::udif
{
namespace
{

constexpr std::size_t headSize = 204;
constexpr std::size_t entrySize = 40;

/// Places of the head's fields.
enum Offset : std::size_t {
    offsetVersion = 4,
    offsetFirstSector = 8,
    offsetSectorCount = 16,
    offsetDataOffset = 24,
    offsetBuffersNeeded = 32,
    offsetDescriptor = 36,
    offsetChecksum = 64,
    offsetEntryCount = 200,
};

bool isCompressed(ChunkType type)
{
    return (static_cast<std::uint32_t>(type) & 0x80000000) != 0;
}

bool isKnown(ChunkType type)
{
    switch (type) {
    case ChunkType::zero:
    case ChunkType::raw:
    case ChunkType::ignored:
    case ChunkType::adc:
    case ChunkType::zlib:
    case ChunkType::bzip2:
    case ChunkType::lzfse:
    case ChunkType::lzma:
    case ChunkType::comment:
    case ChunkType::terminator:
        return true;
    }
    return false;
}

class Reader
{
public:
    Reader(ByteView bytes, const std::string& name, std::uint64_t dataForkLength)
        : m_bytes(bytes), m_dataForkLength(dataForkLength)
    {
        m_table.name = name;
    }

    BlockTable read()
    {
        const std::uint8_t* p = m_bytes.data();
        if (m_bytes.size() < headSize || !std::equal(p, p + 4, viewOf("mish").begin()) ||
            getBE32(p + offsetVersion) != 1)
            fail("it does not begin as one");
        m_table.firstSector = getBE64(p + offsetFirstSector);
        m_table.sectorCount = getBE64(p + offsetSectorCount);
        m_table.dataOffset = getBE64(p + offsetDataOffset);
        m_table.checksumType = getBE32(p + offsetChecksum);
        m_table.checksum = getBE32(p + offsetChecksum + 8);
        const std::size_t count = getBE32(p + offsetEntryCount);
        if (count > (m_bytes.size() - headSize) / entrySize)
            fail("it promises more entries than it has");
        if (m_table.sectorCount > maximumSectorCount || m_table.firstSector > maximumSectorCount)
            fail("its place on the disk is impossible");
        readEntries(count);
        return std::move(m_table);
    }

private:
    [[noreturn]] void fail(const std::string& why) const
    {
        throw DiskImageError("The disk image is damaged: in the block table of \"" + m_table.name + "\", " + why + ".");
    }

    void readEntries(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint8_t* p = m_bytes.data() + headSize + i * entrySize;
            Chunk chunk{static_cast<ChunkType>(getBE32(p)), getBE64(p + 8), getBE64(p + 16), getBE64(p + 24),
                        getBE64(p + 32)};
            if (!isKnown(chunk.type))
                fail("entry " + std::to_string(i) + " is of an unknown kind");
            if (chunk.type == ChunkType::terminator) {
                if (i + 1 != count)
                    fail("entries follow the last one");
                checkCoverage();
                return;
            }
            if (chunk.type != ChunkType::comment)
                addChunk(chunk, i);
        }
        fail("the last entry is missing");
    }

    void addChunk(Chunk chunk, std::size_t index)
    {
        const std::string entry = "entry " + std::to_string(index);
        if (chunk.sectorCount > m_table.sectorCount || chunk.firstSector > m_table.sectorCount - chunk.sectorCount)
            fail(entry + " lies outside its extent");
        if (isCompressed(chunk.type) && chunk.sectorCount > maximumCompressedSectors)
            fail(entry + " expands to " + std::to_string(chunk.sectorCount) + " sectors, which is too much at once");
        if (chunk.type == ChunkType::raw && chunk.length != chunk.sectorCount * sectorSize)
            fail(entry + " has a length that does not suit its sectors");
        if (chunk.type == ChunkType::zero || chunk.type == ChunkType::ignored) {
            chunk.offset = 0; // writers leave different things here
            chunk.length = 0;
        } else {
            if (chunk.offset > m_dataForkLength || m_table.dataOffset > m_dataForkLength - chunk.offset ||
                chunk.length > m_dataForkLength - chunk.offset - m_table.dataOffset)
                fail("the data of " + entry + " lie outside the file's data");
            chunk.offset += m_table.dataOffset;
        }
        m_table.chunks.push_back(chunk);
    }

    /// Chunks may be listed in any order, but every sector of the extent is in exactly one.
    void checkCoverage() const
    {
        std::vector<std::pair<std::uint64_t, std::uint64_t>> pieces;
        for (const Chunk& chunk : m_table.chunks)
            pieces.emplace_back(chunk.firstSector, chunk.sectorCount);
        std::sort(pieces.begin(), pieces.end());
        std::uint64_t next = 0;
        for (const auto& [first, count] : pieces) {
            if (first != next)
                fail("the entries overlap or leave a gap at sector " + std::to_string(std::min(first, next)));
            next += count;
        }
        if (next != m_table.sectorCount)
            fail("the entries cover " + std::to_string(next) + " of " + std::to_string(m_table.sectorCount) +
                 " sectors");
    }

    ByteView m_bytes;
    std::uint64_t m_dataForkLength;
    BlockTable m_table;
};

void appendEntry(Bytes& out, const Chunk& chunk)
{
    appendBE32(out, static_cast<std::uint32_t>(chunk.type));
    appendBE32(out, 0);
    appendBE64(out, chunk.firstSector);
    appendBE64(out, chunk.sectorCount);
    appendBE64(out, chunk.offset);
    appendBE64(out, chunk.length);
}

} // namespace

BlockTable readBlockTable(ByteView bytes, const std::string& name, std::uint64_t dataForkLength)
{
    return Reader(bytes, name, dataForkLength).read();
}

Bytes writeBlockTable(const BlockTable& table, const BlockTableHead& head, std::uint64_t endOffset)
{
    Bytes bytes(headSize);
    std::uint8_t* p = bytes.data();
    std::copy_n("mish", 4, p);
    putBE32(p + offsetVersion, 1);
    putBE64(p + offsetFirstSector, table.firstSector);
    putBE64(p + offsetSectorCount, table.sectorCount);
    putBE64(p + offsetDataOffset, table.dataOffset);
    putBE32(p + offsetBuffersNeeded, head.buffersNeeded);
    putBE32(p + offsetDescriptor, head.descriptor);
    putBE32(p + offsetChecksum, table.checksumType);
    putBE32(p + offsetChecksum + 4, 32);
    putBE32(p + offsetChecksum + 8, table.checksum);
    putBE32(p + offsetEntryCount, static_cast<std::uint32_t>(table.chunks.size() + 1));
    bytes.reserve(headSize + (table.chunks.size() + 1) * entrySize);
    for (const Chunk& chunk : table.chunks)
        appendEntry(bytes, chunk);
    appendEntry(bytes, {ChunkType::terminator, table.sectorCount, 0, endOffset, 0});
    return bytes;
}

} // namespace velmora::diskimage::udif
