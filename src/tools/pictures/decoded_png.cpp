#include "tools/pictures/decoded_png.h"

#include "platform/file_tree.h"
#include "tools/support/png_file.h"

#include <QBuffer>
#include <QByteArray>
#include <QColorSpace>
#include <QImageReader>

#include <stdexcept>

namespace velmora::tools
{

namespace
{

constexpr std::uint64_t fileLimit = std::uint64_t{1} << 30;
constexpr int allocationLimit = 2048; // MiB; the sides are limited before
constexpr std::uint8_t colorTypeRgba = 6;

QImage decode(const std::string& file)
{
    QByteArray bytes = QByteArray::fromRawData(file.data(), static_cast<qsizetype>(file.size()));
    QBuffer buffer(&bytes);
    QImageReader::setAllocationLimit(allocationLimit);
    QImageReader reader(&buffer, "png");
    QImage image = reader.read();
    if (image.isNull())
        throw std::runtime_error(reader.errorString().toStdString());
    return image;
}

} // namespace

DecodedPng readPng(const std::filesystem::path& path, std::uint32_t largestSide)
{
    try {
        DecodedPng result{.file = readFile(path, fileLimit)};
        const PngHeader header = readPngHeader(diskimage::viewOf(result.file));
        if (header.width > largestSide || header.height > largestSide)
            throw std::runtime_error("it has " + std::to_string(header.width) + " x " + std::to_string(header.height) +
                                     " pixels, more than " + std::to_string(largestSide) + " a side");
        if (header.resolution)
            result.dpi = dotsPerInch(header.resolution->x);
        QImage image = decode(result.file);
        const QColorSpace srgb = QColorSpace::SRgb;
        const bool isOther = image.colorSpace().isValid() && image.colorSpace() != srgb;
        if (isOther)
            image.convertToColorSpace(srgb);
        result.isPlainRgba = !isOther && header.bitDepth == 8 && header.colorType == colorTypeRgba;
        result.pixels = image.convertToFormat(QImage::Format_RGBA8888);
        return result;
    } catch (const std::exception& error) {
        throw std::runtime_error("\"" + path.string() + "\": " + error.what());
    }
}

std::string encodePng(const QImage& pixels)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QBuffer::WriteOnly);
    QImage stamped = pixels.convertToFormat(QImage::Format_RGBA8888);
    stamped.setDotsPerMeterX(static_cast<int>(dotsPerMetre(72)));
    stamped.setDotsPerMeterY(static_cast<int>(dotsPerMetre(72)));
    if (!stamped.save(&buffer, "png"))
        throw std::runtime_error("a picture cannot be written as PNG");
    return bytes.toStdString();
}

} // namespace velmora::tools
