#pragma once

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <QString>

#include <memory>
#include <optional>

namespace velmora
{

/// A decoded picture: its pixels (sRGB, premultiplied) and its size in points. Shared and never changed.
struct Picture {
    QImage pixels{};
    QSizeF pointSize{}; ///< from the file's resolution; without one a pixel is a point
};
using PicturePtr = std::shared_ptr<const Picture>;

/// Pictures with more pixels are refused before memory is taken for them.
inline constexpr qint64 largestPicturePixels = 200'000'000;
/// Larger files are not read.
inline constexpr qint64 largestPictureFile = qint64{512} << 20;

/// Decodes one picture file's bytes, recognised by content: PNG, JPEG, TIFF, GIF, WebP, HEIC, BMP, ICNS. The stored
/// orientation is applied and colours are converted to sRGB. Nothing for what cannot be decoded, and for pictures
/// beyond the pixel limit, which is checked before memory is taken. Of several pictures in a file the first is taken,
/// of an icon family the largest. Any thread.
PicturePtr decodePicture(const QByteArray& bytes);

/// Reads and decodes a file. Nothing when it is missing, not a regular file, too large or not a picture.
PicturePtr readPicture(const QString& path);

/// PNG bytes of an image with the given resolution in dots per inch, without a colour profile; empty when it cannot be
/// encoded.
QByteArray encodePng(const QImage& image, int dpi);

} // namespace velmora
