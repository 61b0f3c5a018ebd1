#pragma once

#include <QByteArrayView>

namespace velmora
{

/// The picture formats that are read.
enum class PictureFormat { unknown, png, jpeg, tiff, gif, webp, heic, bmp, icns };

/// Recognises a format by the first bytes of a file.
PictureFormat pictureFormat(QByteArrayView bytes);

/// What a picture file says beside its pixels. Image libraries report a made-up resolution where there is none and
/// honour the orientation in some formats only, so this looks for itself.
struct PictureMetadata {
    int dpiX = 0;        ///< whole dots per inch of the stored columns; 0: none
    int dpiY = 0;        ///< the same of the rows
    int orientation = 1; ///< of the TIFF and EXIF standards, 1…8: where the stored row 0 and column 0 belong
};

/// Reads PNG (pHYs, eXIf), JPEG (JFIF, EXIF), TIFF, WebP (EXIF) and BMP headers; unknown for other formats. Damaged
/// data reads as far as it is sound. Sources: PNG 11.3.5.3; JFIF 1.02; TIFF 6.0 section 2; EXIF 2.3
/// section 4.6; WebP container; BITMAPINFOHEADER.
PictureMetadata readPictureMetadata(PictureFormat format, QByteArrayView bytes);

/// Reads the metadata of a block in TIFF form: a TIFF file, or the EXIF data of other formats.
PictureMetadata readTiffMetadata(QByteArrayView bytes);

} // namespace velmora
