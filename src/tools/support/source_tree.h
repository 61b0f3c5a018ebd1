#pragma once

#include "diskimage/hfs/entry.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace velmora::tools
{

/// How a folder is taken into a volume.
struct ScanOptions {
    std::optional<std::int64_t> latestTime{}; ///< Unix seconds; later modification dates become this one
};

/// Describes a folder's whole content as a volume's; the root entry gets `volumeName`. Names are sorted by bytes,
/// links kept as links, hard-linked files independent; both dates are the modification date. Files are opened only when
/// the result's openData is called. Throws FileError for what cannot be read, and for sockets, pipes and devices,
/// naming the file.
diskimage::hfs::Entry scanFolder(const std::filesystem::path& folder, const std::string& volumeName,
                                 const ScanOptions& options);

} // namespace velmora::tools
