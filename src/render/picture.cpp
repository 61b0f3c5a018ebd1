#include "render/picture.h"

#include "render/heif_pictures.h"
#include "render/icon_pictures.h"
#include "render/picture_metadata.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QTransform>

#include <mutex>
#include <utility>

namespace velmora
{
namespace
{

constexpr double pointsPerInch = 72;

/// The image library's name of a format that it is trusted with; null for the others.
const char* readerName(PictureFormat format)
{
    switch (format) {
    case PictureFormat::png:
        return "png";
    case PictureFormat::jpeg:
        return "jpeg";
    case PictureFormat::tiff:
        return "tiff";
    case PictureFormat::gif:
        return "gif";
    case PictureFormat::webp:
        return "webp";
    case PictureFormat::bmp:
        return "bmp";
    default:
        return nullptr;
    }
}

/// The library's own limit is for the whole process and too low for the pixel limit; a higher one stays.
void raiseAllocationLimit()
{
    constexpr int megabytes = 1024;
    static std::once_flag once;
    std::call_once(once, [] {
        if (QImageReader::allocationLimit() != 0 && QImageReader::allocationLimit() < megabytes)
            QImageReader::setAllocationLimit(megabytes);
    });
}

/// Decodes with exactly the plug-in for `format`, so that nothing else ever sees the bytes.
QImage decodeWithReader(const QByteArray& bytes, PictureFormat format)
{
    raiseAllocationLimit();
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, readerName(format));
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(false);
    const QSize size = reader.size();
    if (size.isEmpty() || qint64{size.width()} * size.height() > largestPicturePixels)
        return {};
    return reader.read();
}

QImage decodePng(const QByteArray& bytes)
{
    return decodeWithReader(bytes, PictureFormat::png);
}

/// Turns a stored picture upright (EXIF 2.3, table 6).
QImage upright(const QImage& image, int orientation)
{
    switch (orientation) {
    case 2:
        return image.mirrored(true, false);
    case 3:
        return image.mirrored(true, true);
    case 4:
        return image.mirrored(false, true);
    case 5:
        return image.transformed(QTransform(0, 1, 1, 0, 0, 0));
    case 6:
        return image.transformed(QTransform().rotate(90));
    case 7:
        return image.transformed(QTransform(0, -1, -1, 0, 0, 0));
    case 8:
        return image.transformed(QTransform().rotate(-90));
    default:
        return image;
    }
}

QImage inSRgb(QImage image)
{
    const QColorSpace space = image.colorSpace();
    if (space.isValid() && space != QColorSpace(QColorSpace::SRgb)) {
        // Palettes and grey values are converted first: a colour space speaks of red, green and blue.
        const bool alpha = image.hasAlphaChannel();
        if (image.depth() > 32)
            image.convertTo(alpha ? QImage::Format_RGBA64 : QImage::Format_RGBX64);
        else
            image.convertTo(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        image.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
    }
    image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    image.setColorSpace({});
    return image;
}

} // namespace

PicturePtr decodePicture(const QByteArray& bytes)
{
    const PictureFormat format = pictureFormat(bytes);
    PictureMetadata metadata = readPictureMetadata(format, bytes);
    QImage image;
    if (readerName(format)) {
        image = decodeWithReader(bytes, format);
    } else if (format == PictureFormat::heic) {
        HeifPicture picture = decodeHeif(bytes, largestPicturePixels);
        image = std::move(picture.pixels);
        metadata = readTiffMetadata(picture.exif);
        metadata.orientation = 1;
    } else if (format == PictureFormat::icns) {
        image = decodeIconFamily(bytes, decodePng);
    }
    if (image.isNull())
        return nullptr;

    constexpr int firstTransposed = 5;
    if (metadata.orientation >= firstTransposed)
        std::swap(metadata.dpiX, metadata.dpiY);
    image = inSRgb(upright(image, metadata.orientation));
    if (image.isNull())
        return nullptr;
    image.setDevicePixelRatio(1);
    const auto points = [](int pixels, int dpi) { return dpi > 0 ? pixels * pointsPerInch / dpi : pixels; };
    const QSizeF size(points(image.width(), metadata.dpiX), points(image.height(), metadata.dpiY));
    return std::make_shared<const Picture>(Picture{std::move(image), size});
}

PicturePtr readPicture(const QString& path)
{
    // The check keeps pipes and devices from being opened: reading them might never end.
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || info.size() > largestPictureFile || !file.open(QIODevice::ReadOnly))
        return nullptr;
    return decodePicture(file.readAll());
}

QByteArray encodePng(const QImage& image, int dpi)
{
    constexpr double metresPerInch = 0.0254;
    QImage copy = image;
    copy.setColorSpace({});
    copy.setDotsPerMeterX(qRound(dpi / metresPerInch));
    copy.setDotsPerMeterY(qRound(dpi / metresPerInch));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (copy.isNull() || !QImageWriter(&buffer, "png").write(copy))
        return {};
    return bytes;
}

} // namespace velmora
