#pragma once

#include "diskimage/base/partition_table.h"
#include "diskimage/base/storage.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora::diskimage::udif
{

/// The trailer of a UDIF file ("koly", 512 bytes, big-endian).
struct Trailer {
    std::uint32_t flags = 1;
    std::uint64_t dataForkOffset = 0;
    std::uint64_t dataForkLength = 0;
    std::uint32_t segmentNumber = 1;
    std::uint32_t segmentCount = 1;
    Guid segmentId{};
    std::uint32_t dataChecksumType = 2; ///< 2 is CRC-32, 0 is none
    std::uint32_t dataChecksum = 0;
    std::uint64_t plistOffset = 0;
    std::uint64_t plistLength = 0;
    std::uint64_t signatureOffset = 0;
    std::uint64_t signatureLength = 0;
    std::uint32_t masterChecksumType = 2;
    std::uint32_t masterChecksum = 0;
    std::uint32_t imageVariant = 1;
    std::uint64_t sectorCount = 0;
};
inline constexpr std::size_t trailerSize = 512;
inline constexpr std::uint32_t trailerFlagInternetEnabled = 0x4;

/// What one chunk of a block table holds.
enum class ChunkType : std::uint32_t {
    zero = 0x00000000,
    raw = 0x00000001,
    ignored = 0x00000002,
    adc = 0x80000004,
    zlib = 0x80000005,
    bzip2 = 0x80000006,
    lzfse = 0x80000007,
    lzma = 0x80000008,
    comment = 0x7FFFFFFE,
    terminator = 0xFFFFFFFF
};

struct Chunk {
    ChunkType type = ChunkType::zero;
    std::uint64_t firstSector = 0; ///< relative to its extent
    std::uint64_t sectorCount = 0;
    std::uint64_t offset = 0; ///< of the payload in the data fork; after reading, the table's dataOffset is added
    std::uint64_t length = 0; ///< bytes of the payload
};

/// One entry of the block table list ("blkx"), decoded from its "mish" record.
struct BlockTable {
    std::string name{};
    std::uint64_t firstSector = 0;
    std::uint64_t sectorCount = 0;
    std::uint64_t dataOffset = 0;
    std::uint32_t checksumType = 2;
    std::uint32_t checksum = 0;
    std::vector<Chunk> chunks{}; ///< without comments and terminator
};

/// What an image file is.
enum class ImageKind { raw, udif };

/// A disk image opened for reading: the expanded disk, whatever the file's form. Hostile files end in DiskImageError.
class Image
{
public:
    /// Opens the file in `file`, which must outlive the object. A file without a trailer is a raw disk; an encrypted
    /// one is refused with a sentence that says so.
    explicit Image(const Source& file);
    ~Image();

    [[nodiscard]] ImageKind kind() const;
    /// The format code: "UDRW" for a raw disk, "UDRO", "UDZO", "ULFO", "UDBZ", "ULMO" or "UDCO" by its chunks.
    [[nodiscard]] std::string formatCode() const;
    /// The trailer, for a UDIF file.
    [[nodiscard]] const std::optional<Trailer>& trailer() const;
    [[nodiscard]] const std::vector<BlockTable>& tables() const;
    /// The expanded disk: reads decompress what they need, a few recent chunks are kept. Chunks of a kind that cannot
    /// be expanded throw DiskImageError when they are read.
    [[nodiscard]] const Source& disk() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// The outcome of checking one checksum.
struct ChecksumResult {
    std::string name{}; ///< the extent's name, "data fork" or "master"
    std::uint32_t stored = 0;
    std::uint32_t computed = 0;
    [[nodiscard]] bool ok() const { return stored == computed; }
};

/// Recomputes every checksum of a UDIF image: each extent's, the data fork's, the master's. Throws DiskImageError when
/// the image cannot be read.
std::vector<ChecksumResult> verifyChecksums(const Source& file, const Image& image);

/// The formats that can be written.
enum class Format { udrw, udro, udzo };

struct ConvertOptions {
    Format format = Format::udzo;
    int zlibLevel = 6;                      ///< 1 to 9: chunks take no more room than with zlib's level
    unsigned threads = 0;                   ///< 0: all cores. The result does not depend on it
    Guid segmentId{};                       ///< all zero lets it be derived from the content
    std::function<void(double)> progress{}; ///< called with 0..1, from the calling thread
    std::function<bool()> stopped{};        ///< true ends the conversion with DiskImageError
};

/// Writes `disk`, a raw disk with a partition table, to `out` (empty) in the wanted format.
void convert(const Source& disk, Storage& out, const ConvertOptions& options);

/// Sets or clears the internet-enable bit of a UDIF file's trailer. Throws DiskImageError for a file without one.
void setInternetEnabled(Storage& file, bool enabled);

} // namespace velmora::diskimage::udif
