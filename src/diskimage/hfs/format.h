#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

/// Numbers of the HFS+ format (Apple TN1150) that several files share. Everything on disk is big-endian.
namespace velmora::diskimage::hfs
{

// Places of the headers.
inline constexpr std::uint64_t volumeHeaderOffset = 1024;
inline constexpr std::size_t volumeHeaderSize = 512;
inline constexpr std::uint64_t alternateHeaderFromEnd = 1024;

// Catalog node IDs that are not user files.
inline constexpr std::uint32_t rootParentId = 1;
inline constexpr std::uint32_t extentsFileId = 3;
inline constexpr std::uint32_t catalogFileId = 4;
inline constexpr std::uint32_t badBlocksFileId = 5;
inline constexpr std::uint32_t allocationFileId = 6;
inline constexpr std::uint32_t startupFileId = 7;
inline constexpr std::uint32_t attributesFileId = 8;
inline constexpr std::uint32_t firstUserId = 16;

// Volume attributes.
inline constexpr std::uint32_t volumeUnmounted = 0x00000100;
inline constexpr std::uint32_t volumeJournaled = 0x00002000;
inline constexpr std::uint32_t volumeInconsistent = 0x00004800; ///< either of two bits
inline constexpr std::uint32_t volumeUnusedNodesZeroed = 0x80000000;
inline constexpr std::uint32_t mountedByMacOs = 0x31302E30; ///< "10.0"

// B-trees.
inline constexpr std::size_t nodeDescriptorSize = 14;
inline constexpr std::size_t headerMapOffset = 248;
inline constexpr std::size_t mapNodeOverhead = 20;
inline constexpr std::uint8_t nodeKindLeaf = 0xFF;
inline constexpr std::uint8_t nodeKindIndex = 0;
inline constexpr std::uint8_t nodeKindHeader = 1;
inline constexpr std::uint8_t nodeKindMap = 2;
inline constexpr std::uint32_t treeBigKeys = 2;
inline constexpr std::uint32_t treeVariableIndexKeys = 4;
inline constexpr std::uint8_t compareCaseFolding = 0xCF;
inline constexpr std::uint8_t compareBinary = 0xBC;
inline constexpr std::uint16_t catalogMaxKeyLength = 516;
inline constexpr std::uint16_t extentsMaxKeyLength = 10;
inline constexpr std::uint16_t attributesMaxKeyLength = 266;
inline constexpr std::uint16_t maximumTreeDepth = 8;

// Catalog records.
inline constexpr std::uint16_t recordFolder = 1;
inline constexpr std::uint16_t recordFile = 2;
inline constexpr std::uint16_t recordFolderThread = 3;
inline constexpr std::uint16_t recordFileThread = 4;
inline constexpr std::size_t folderRecordSize = 88;
inline constexpr std::size_t fileRecordSize = 248;
inline constexpr std::size_t threadRecordSize = 10; ///< and the name
inline constexpr std::uint16_t itemThreadExists = 0x0002;
inline constexpr std::uint16_t itemHasAttributes = 0x0004;
inline constexpr std::uint16_t itemHasSecurity = 0x0008;
inline constexpr std::uint16_t itemHasFolderCount = 0x0010;
inline constexpr std::uint16_t itemHasLinkChain = 0x0020;
inline constexpr std::uint16_t finderFlagNameLocked = 0x1000;

// File modes.
inline constexpr std::uint16_t modeTypeMask = 0170000;
inline constexpr std::uint16_t modeFolder = 0040000;
inline constexpr std::uint16_t modeFile = 0100000;
inline constexpr std::uint16_t modeSymlink = 0120000;

// Finder types and creators.
inline constexpr std::uint32_t typeSymlink = 0x736C6E6B;       ///< "slnk"
inline constexpr std::uint32_t creatorSymlink = 0x72686170;    ///< "rhap"
inline constexpr std::uint32_t typeHardLink = 0x686C6E6B;      ///< "hlnk"
inline constexpr std::uint32_t creatorHardLink = 0x6866732B;   ///< "hfs+"
inline constexpr std::uint32_t typeFolderLink = 0x66647270;    ///< "fdrp"
inline constexpr std::uint32_t creatorFolderLink = 0x4D414353; ///< "MACS"

// Attribute records.
inline constexpr std::uint32_t attributeInline = 0x10;
inline constexpr std::uint32_t attributeFork = 0x20;
inline constexpr std::uint32_t attributeExtents = 0x30;
inline constexpr std::size_t maximumAttributeNameLength = 127;

inline constexpr std::size_t maximumLinkLength = 1024;
/// Folders inside folders that are read or written; more would exhaust the stack of whoever walks the tree.
inline constexpr std::size_t maximumDepth = 1000;

// Dates: seconds since 1904-01-01 00:00.
inline constexpr std::int64_t dateOffset = 2082844800;
inline std::uint32_t dateFromUnix(std::int64_t seconds)
{
    constexpr std::int64_t latest = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::clamp(seconds, -dateOffset, latest - dateOffset) + dateOffset);
}
inline std::int64_t unixFromDate(std::uint32_t date)
{
    return std::int64_t{date} - dateOffset;
}

inline std::uint64_t ceilDivide(std::uint64_t value, std::uint64_t unit)
{
    return value / unit + (value % unit != 0 ? 1 : 0);
}

} // namespace velmora::diskimage::hfs
