#pragma once

#include "diskimage/finder/ds_store.h"
#include "diskimage/hfs/volume.h"
#include "diskimage/udif/image.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace velmora::cli
{

/// An image file opened down to its HFS+ volume.
struct OpenedImage {
    /// Throws diskimage::DiskImageError, naming what is wrong.
    explicit OpenedImage(const std::filesystem::path& path);

    std::unique_ptr<diskimage::Storage> file;
    diskimage::udif::Image image;
    diskimage::DiskExtent extent; ///< the volume's place on the disk
    std::unique_ptr<diskimage::Source> partition;
    diskimage::hfs::Volume volume;

    /// All bytes of a file in the volume, at most `limit`. Throws DiskImageError.
    [[nodiscard]] diskimage::Bytes content(const diskimage::hfs::Entry& entry, std::uint64_t limit) const;
    /// What the volume's window looks like, or nothing when the volume does not say. Throws DiskImageError.
    [[nodiscard]] std::optional<diskimage::finder::ReadLayout> layout() const;
};

} // namespace velmora::cli
