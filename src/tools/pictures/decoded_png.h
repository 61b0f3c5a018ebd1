#pragma once

#include <QImage>

#include <filesystem>
#include <string>

namespace velmora::tools
{

/// A PNG file and its pixels.
struct DecodedPng {
    std::string file{};       ///< the file's bytes
    QImage pixels{};          ///< Format_RGBA8888 (straight alpha), sRGB
    double dpi = 72;          ///< whole dots per inch across; 72 when the file does not say
    bool isPlainRgba = false; ///< whether the file itself holds 8-bit RGBA without a colour profile of another kind
};

/// Reads a PNG file of at most `largestSide` pixels a side; the size is checked before memory is taken. Throws
/// std::runtime_error, naming the file.
DecodedPng readPng(const std::filesystem::path& path, std::uint32_t largestSide);

/// The file of an image, 8 bits RGBA.
std::string encodePng(const QImage& pixels);

} // namespace velmora::tools
