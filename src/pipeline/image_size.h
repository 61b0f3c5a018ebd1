#pragma once

#include "model/project.h"
#include "pipeline/build_run.h"

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace velmora
{

/// Larger images are refused: the limit of an HFS+ volume with blocks of 4 KiB.
inline constexpr std::int64_t maximumImageSizeMB = std::int64_t{16} * 1024 * 1024;

/// The kilobytes in the disk-usage tool's output ("123<tab>path"); 0 when there is no number.
std::int64_t parseKilobytes(std::string_view output);

/// The image's size in megabytes for so many kilobytes of content: room for 40 % more and 25 MB, at least 32 MB.
std::int64_t imageSizeMB(std::int64_t kilobytes);

/// How large the image becomes, and because of how much.
struct ImageSize {
    std::int64_t contentKilobytes = 0;
    std::int64_t megabytes = 0;
};

/// Measures the staged content and chooses the size of the image, at least the one that the project asks for.
ImageSize chooseImageSize(BuildRun& run, const DMGProject& project, const std::filesystem::path& stage);

} // namespace velmora
