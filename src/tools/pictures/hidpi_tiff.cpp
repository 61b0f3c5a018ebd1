#include "tools/pictures/hidpi_tiff.h"

#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace velmora::tools
{

namespace
{

constexpr std::uint32_t stripBytes = 64 * 1024;

bool isOpaque(const QImage& rgba)
{
    for (int y = 0; y < rgba.height(); ++y) {
        const uchar* const row = rgba.constScanLine(y);
        for (int x = 0; x < rgba.width(); ++x) {
            if (row[4 * x + 3] != 0xFF)
                return false;
        }
    }
    return true;
}

[[noreturn]] void fail(const std::filesystem::path& path)
{
    throw std::runtime_error("\"" + path.string() + "\": the TIFF file cannot be written");
}

/// Sets the tags of the current directory.
void describePicture(TIFF* tiff, const QImage& samples, int channels, double dpi)
{
    const auto width = static_cast<std::uint32_t>(samples.width());
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(samples.height()));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, dpi);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, dpi);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, std::max(1U, stripBytes / (width * static_cast<unsigned>(channels))));
    if (channels == 4) {
        const std::uint16_t alpha = EXTRASAMPLE_ASSOCALPHA;
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
    }
}

bool writePicture(TIFF* tiff, const DecodedPng& picture)
{
    const bool opaque = isOpaque(picture.pixels);
    QImage samples =
        picture.pixels.convertToFormat(opaque ? QImage::Format_RGB888 : QImage::Format_RGBA8888_Premultiplied);
    describePicture(tiff, samples, opaque ? 3 : 4, picture.dpi);
    for (int y = 0; y < samples.height(); ++y) {
        if (TIFFWriteScanline(tiff, samples.scanLine(y), static_cast<std::uint32_t>(y), 0) < 0)
            return false;
    }
    return TIFFWriteDirectory(tiff) != 0;
}

std::string sizeText(const DecodedPng& picture)
{
    return std::to_string(picture.pixels.width()) + " x " + std::to_string(picture.pixels.height());
}

} // namespace

std::vector<std::string> checkResolutions(const DecodedPng& first, const DecodedPng& second)
{
    std::vector<std::string> warnings;
    if (second.pixels.size() != first.pixels.size() * 2)
        warnings.push_back("the second picture has " + sizeText(second) + " pixels, not twice the " + sizeText(first) +
                           " of the first");
    if (std::abs(second.dpi - 2 * first.dpi) > 0.5)
        warnings.push_back("the second picture has " + std::to_string(std::lround(second.dpi)) +
                           " dots per inch, not twice the " + std::to_string(std::lround(first.dpi)) + " of the first");
    return warnings;
}

void writeTiff(const std::filesystem::path& path, std::span<const DecodedPng> pictures)
{
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(path.c_str(), "wl"), &TIFFClose);
    if (!tiff)
        fail(path);
    for (const DecodedPng& picture : pictures) {
        if (!writePicture(tiff.get(), picture))
            fail(path);
    }
    if (TIFFFlush(tiff.get()) == 0)
        fail(path);
}

} // namespace velmora::tools
