#pragma once

#include "diskimage/hfs/entry.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace velmora::diskimage::hfs
{

/// What the volume header says.
struct VolumeInfo {
    std::string name{};
    bool caseSensitive = false;
    std::uint32_t blockSize = 0;
    std::uint32_t totalBlocks = 0;
    std::uint32_t freeBlocks = 0;
    std::uint32_t fileCount = 0;
    std::uint32_t folderCount = 0;
    std::int64_t created = 0; ///< Unix seconds, the header's date taken as UTC
    std::uint64_t identifier = 0;
};

/// An HFS+ volume that is read. Every structure is checked against the volume's size before it is used: a damaged or
/// malicious one ends in DiskImageError, in bounded time and memory.
class Volume
{
public:
    /// Opens the volume that fills `source` and reads its catalog. Keeps a reference: `source` must outlive the object
    /// and every fork opened from it.
    explicit Volume(const Source& source);
    ~Volume();
    Volume(Volume&&) noexcept;
    Volume& operator=(Volume&&) noexcept;

    [[nodiscard]] const VolumeInfo& info() const;
    /// The root folder with everything in it; the entries' openData and openResource read from the source and do not
    /// need this object. Hard links show what they refer to; the file system's own files are left out, and so are
    /// pipes, devices and access-control lists. openData of a file stored in compressed form throws DiskImageError.
    [[nodiscard]] const Entry& root() const;
    /// The entry at a path below the root ("/.background/background.tiff"; names compared by the volume's rule), or
    /// null.
    [[nodiscard]] const Entry* find(std::string_view path) const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// Whether the source looks like an HFS+ volume.
bool isHfsPlus(const Source& source);

} // namespace velmora::diskimage::hfs
