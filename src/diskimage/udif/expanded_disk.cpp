#include "diskimage/udif/expanded_disk.h"

#include "diskimage/base/error.h"
#include "diskimage/udif/zlib_codec.h"

#include <algorithm>
#include <list>
#include <mutex>

namespace velmora::diskimage::udif
{
namespace
{

/// A chunk at its place on the disk; positions and lengths in bytes.
struct Piece {
    std::uint64_t start = 0;
    std::uint64_t size = 0;
    ChunkType type = ChunkType::zero;
    std::uint64_t fileOffset = 0;
    std::uint64_t length = 0;
};

using SharedBytes = std::shared_ptr<const Bytes>;

/// The chunks that were expanded last, by the index of their piece.
class RecentChunks
{
public:
    SharedBytes find(std::size_t index)
    {
        const std::lock_guard lock(m_mutex);
        for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
            if (entry->first == index) {
                m_entries.splice(m_entries.begin(), m_entries, entry);
                return entry->second;
            }
        }
        return nullptr;
    }

    void add(std::size_t index, SharedBytes bytes)
    {
        const std::lock_guard lock(m_mutex);
        m_entries.emplace_front(index, std::move(bytes));
        if (m_entries.size() > capacity)
            m_entries.pop_back();
    }

private:
    static constexpr std::size_t capacity = 16;
    std::mutex m_mutex;
    std::list<std::pair<std::size_t, SharedBytes>> m_entries; ///< the latest first
};

const char* compressionOf(ChunkType type)
{
    switch (type) {
    case ChunkType::adc:
        return "ADC";
    case ChunkType::bzip2:
        return "bzip2";
    case ChunkType::lzfse:
        return "LZFSE";
    default:
        return "LZMA";
    }
}

class ExpandedDisk : public Source
{
public:
    ExpandedDisk(const Source& file, std::uint64_t dataForkOffset, const std::vector<BlockTable>& tables) : m_file(file)
    {
        for (const BlockTable& table : tables) {
            for (const Chunk& chunk : table.chunks) {
                if (chunk.sectorCount > 0)
                    m_pieces.push_back({(table.firstSector + chunk.firstSector) * sectorSize,
                                        chunk.sectorCount * sectorSize, chunk.type, dataForkOffset + chunk.offset,
                                        chunk.length});
            }
        }
        std::sort(m_pieces.begin(), m_pieces.end(), [](const Piece& a, const Piece& b) { return a.start < b.start; });
        if (!m_pieces.empty())
            m_size = m_pieces.back().start + m_pieces.back().size;
    }

    [[nodiscard]] std::uint64_t size() const override { return m_size; }

    void read(std::uint64_t offset, MutableByteView out) const override
    {
        if (offset > m_size || out.size() > m_size - offset)
            throw DiskImageError("Reading " + std::to_string(out.size()) + " bytes at " + std::to_string(offset) +
                                 " reaches beyond the end of the disk (" + std::to_string(m_size) + " bytes).");
        auto piece = pieceAt(offset);
        while (!out.empty()) {
            const Piece& current = *piece++;
            const std::uint64_t within = offset - current.start;
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), current.size - within));
            readPiece(current, within, out.first(count));
            out = out.subspan(count);
            offset += count;
        }
    }

    [[nodiscard]] ByteRange nextData(std::uint64_t offset) const override
    {
        const auto isData = [](const Piece& p) { return p.type != ChunkType::zero && p.type != ChunkType::ignored; };
        const auto first = std::find_if(pieceAt(offset), m_pieces.end(), isData);
        if (first == m_pieces.end())
            return {m_size, m_size};
        const auto behind = std::find_if_not(first, m_pieces.end(), isData);
        return {std::max(offset, first->start), behind == m_pieces.end() ? m_size : behind->start};
    }

private:
    using PieceIterator = std::vector<Piece>::const_iterator;

    /// The piece that holds a position; the pieces adjoin. None at the end.
    [[nodiscard]] PieceIterator pieceAt(std::uint64_t offset) const
    {
        return std::partition_point(m_pieces.begin(), m_pieces.end(),
                                    [=](const Piece& p) { return p.start + p.size <= offset; });
    }

    void readPiece(const Piece& piece, std::uint64_t within, MutableByteView out) const
    {
        switch (piece.type) {
        case ChunkType::zero:
        case ChunkType::ignored:
            std::fill(out.begin(), out.end(), std::uint8_t{0});
            return;
        case ChunkType::raw:
            readAroundHoles(m_file, piece.fileOffset + within, out);
            return;
        default: {
            const SharedBytes bytes = expanded(piece);
            std::copy_n(bytes->begin() + static_cast<std::ptrdiff_t>(within), out.size(), out.begin());
        }
        }
    }

    [[nodiscard]] SharedBytes expanded(const Piece& piece) const
    {
        const auto index = static_cast<std::size_t>(&piece - m_pieces.data());
        if (SharedBytes bytes = m_recent.find(index))
            return bytes;
        const std::string place = "The chunk at sector " + std::to_string(piece.start / sectorSize) + " of the disk ";
        if (piece.type != ChunkType::zlib)
            throw DiskImageError(place + "is compressed with " + compressionOf(piece.type) + ", which cannot be read.");
        // No stream of this length expands to so little: reading it whole would be a waste.
        if (piece.length > piece.size + piece.size / 8 + sectorSize)
            throw DiskImageError(place + "cannot be expanded: the compressed data are too long.");
        const Bytes stream = m_file.read(piece.fileOffset, static_cast<std::size_t>(piece.length));
        SharedBytes bytes;
        try {
            bytes = std::make_shared<const Bytes>(expandZlib(stream, static_cast<std::size_t>(piece.size)));
        } catch (const DiskImageError& error) {
            throw DiskImageError(place + "cannot be expanded: " + error.what() + ".");
        }
        m_recent.add(index, bytes);
        return bytes;
    }

    const Source& m_file;
    std::vector<Piece> m_pieces;
    std::uint64_t m_size = 0;
    mutable RecentChunks m_recent;
};

} // namespace

std::unique_ptr<Source> expandedDisk(const Source& file, std::uint64_t dataForkOffset,
                                     const std::vector<BlockTable>& tables)
{
    return std::make_unique<ExpandedDisk>(file, dataForkOffset, tables);
}

} // namespace velmora::diskimage::udif
