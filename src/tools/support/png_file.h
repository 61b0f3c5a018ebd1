#pragma once

#include "diskimage/base/bytes.h"

#include <cstdint>
#include <optional>
#include <string_view>

/// The frame of PNG files (ISO/IEC 15948): their chunks, without decoding pixels.
namespace velmora::tools
{

/// Dots per metre.
struct PngResolution {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
};

/// What the chunks before the pixels say.
struct PngHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint8_t bitDepth = 0;
    std::uint8_t colorType = 0;                ///< 6 is red, green, blue, alpha
    std::optional<PngResolution> resolution{}; ///< only when given per metre
};

/// Whether the bytes begin as every PNG file does.
bool isPng(diskimage::ByteView file);

/// Reads the header. Every chunk's length and checksum is checked, to the end of the picture. Throws
/// std::runtime_error.
PngHeader readPngHeader(diskimage::ByteView file);

/// The file with another resolution: its pHYs chunk is replaced, or put before the pixels; all else stays byte for
/// byte. Throws std::runtime_error for what readPngHeader refuses.
diskimage::Bytes withResolution(diskimage::ByteView file, PngResolution resolution);

/// Dots per metre of dots per inch, and back to whole dots per inch (2835 per metre is 72).
std::uint32_t dotsPerMetre(double perInch);
double dotsPerInch(std::uint32_t perMetre);

} // namespace velmora::tools
