#pragma once

#include <QByteArray>
#include <QImage>

namespace velmora
{

/// The primary picture of a HEIC file.
struct HeifPicture {
    QImage pixels{};   ///< upright, with its colour space; null when it could not be decoded
    QByteArray exif{}; ///< in TIFF form; its orientation is already applied. Empty when there is none
};

/// Decodes HEIC bytes. Nothing comes back for a picture of more than `pixelLimit` pixels.
HeifPicture decodeHeif(const QByteArray& bytes, qint64 pixelLimit);

} // namespace velmora
