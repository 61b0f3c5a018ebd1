#include "diskimage/base/error.h"
#include "diskimage/udif/format.h"

#include <algorithm>

namespace velmora::diskimage::udif
{
namespace
{

constexpr std::uint32_t supportedVersion = 4;
constexpr std::uint32_t crcBits = 32;

/// Places of the fields.
enum Offset : std::size_t {
    offsetVersion = 4,
    offsetHeaderSize = 8,
    offsetFlags = 12,
    offsetDataFork = 24,
    offsetSegmentNumber = 56,
    offsetSegmentCount = 60,
    offsetSegmentId = 64,
    offsetDataChecksum = 80,
    offsetPlist = 216,
    offsetSignature = 296,
    offsetMasterChecksum = 352,
    offsetImageVariant = 488,
    offsetSectorCount = 492,
};

void checkRange(std::uint64_t offset, std::uint64_t length, std::uint64_t limit, const char* what)
{
    if (offset > limit || length > limit - offset)
        throw DiskImageError(std::string("The disk image is damaged: its ") + what + " lies outside the file.");
}

void putChecksum(std::uint8_t* p, std::uint32_t type, std::uint32_t value)
{
    putBE32(p, type);
    putBE32(p + 4, type == checksumCrc32 ? crcBits : 0);
    putBE32(p + 8, value);
}

} // namespace

bool isTrailer(ByteView end)
{
    return end.size() == trailerSize && std::equal(end.begin(), end.begin() + 4, viewOf("koly").begin());
}

Trailer readTrailer(ByteView bytes, std::uint64_t fileSize)
{
    const std::uint8_t* p = bytes.data();
    if (getBE32(p + offsetVersion) != supportedVersion || getBE32(p + offsetHeaderSize) != trailerSize)
        throw DiskImageError("The disk image's trailer has version " + std::to_string(getBE32(p + offsetVersion)) +
                             ", which is not supported.");
    Trailer trailer;
    trailer.flags = getBE32(p + offsetFlags);
    trailer.dataForkOffset = getBE64(p + offsetDataFork);
    trailer.dataForkLength = getBE64(p + offsetDataFork + 8);
    trailer.segmentNumber = getBE32(p + offsetSegmentNumber);
    trailer.segmentCount = getBE32(p + offsetSegmentCount);
    std::copy_n(p + offsetSegmentId, trailer.segmentId.size(), trailer.segmentId.begin());
    trailer.dataChecksumType = getBE32(p + offsetDataChecksum);
    trailer.dataChecksum = getBE32(p + offsetDataChecksum + 8);
    trailer.plistOffset = getBE64(p + offsetPlist);
    trailer.plistLength = getBE64(p + offsetPlist + 8);
    trailer.signatureOffset = getBE64(p + offsetSignature);
    trailer.signatureLength = getBE64(p + offsetSignature + 8);
    trailer.masterChecksumType = getBE32(p + offsetMasterChecksum);
    trailer.masterChecksum = getBE32(p + offsetMasterChecksum + 8);
    trailer.imageVariant = getBE32(p + offsetImageVariant);
    trailer.sectorCount = getBE64(p + offsetSectorCount);

    const std::uint64_t limit = fileSize - trailerSize;
    checkRange(trailer.dataForkOffset, trailer.dataForkLength, limit, "data");
    checkRange(trailer.plistOffset, trailer.plistLength, limit, "property list");
    checkRange(trailer.signatureOffset, trailer.signatureLength, limit, "signature");
    if (trailer.segmentCount > 1)
        throw DiskImageError("The disk image is one of " + std::to_string(trailer.segmentCount) +
                             " segments of a larger one; only images in one file can be read.");
    if (trailer.sectorCount > maximumSectorCount)
        throw DiskImageError("The disk image claims " + std::to_string(trailer.sectorCount) +
                             " sectors, more than any disk has.");
    return trailer;
}

Bytes writeTrailer(const Trailer& trailer)
{
    Bytes bytes(trailerSize);
    std::uint8_t* p = bytes.data();
    std::copy_n("koly", 4, p);
    putBE32(p + offsetVersion, supportedVersion);
    putBE32(p + offsetHeaderSize, trailerSize);
    putBE32(p + offsetFlags, trailer.flags);
    putBE64(p + offsetDataFork, trailer.dataForkOffset);
    putBE64(p + offsetDataFork + 8, trailer.dataForkLength);
    putBE32(p + offsetSegmentNumber, trailer.segmentNumber);
    putBE32(p + offsetSegmentCount, trailer.segmentCount);
    std::copy(trailer.segmentId.begin(), trailer.segmentId.end(), p + offsetSegmentId);
    putChecksum(p + offsetDataChecksum, trailer.dataChecksumType, trailer.dataChecksum);
    putBE64(p + offsetPlist, trailer.plistOffset);
    putBE64(p + offsetPlist + 8, trailer.plistLength);
    putBE64(p + offsetSignature, trailer.signatureOffset);
    putBE64(p + offsetSignature + 8, trailer.signatureLength);
    putChecksum(p + offsetMasterChecksum, trailer.masterChecksumType, trailer.masterChecksum);
    putBE32(p + offsetImageVariant, trailer.imageVariant);
    putBE64(p + offsetSectorCount, trailer.sectorCount);
    return bytes;
}

void setInternetEnabled(Storage& file, bool enabled)
{
    const std::uint64_t size = file.size();
    const Bytes end = size < trailerSize ? Bytes() : file.read(size - trailerSize, trailerSize);
    if (!isTrailer(end))
        throw DiskImageError("The disk image cannot be internet-enabled: it has no trailer, as only read-only images "
                             "that are not encrypted have one.");
    const Trailer trailer = readTrailer(end, size);
    const std::uint32_t flags =
        enabled ? trailer.flags | trailerFlagInternetEnabled : trailer.flags & ~trailerFlagInternetEnabled;
    if (flags == trailer.flags)
        return;
    if (trailer.signatureLength != 0)
        throw DiskImageError("The disk image is signed: changing it now would break its signature.");
    // Fields that are not understood stay as they are.
    std::uint8_t bytes[4];
    putBE32(bytes, flags);
    file.write(size - trailerSize + offsetFlags, bytes);
}

} // namespace velmora::diskimage::udif
