#include "render/picture_metadata.h"

#include <QtEndian>

#include <cmath>
#include <cstdint>

namespace velmora
{
namespace
{

constexpr double metresPerInch = 0.0254;

/// Whole dots per inch of a density, or 0 when it is none.
int wholeDpi(double dotsPerInch)
{
    constexpr double largest = 65535; // no scanner or printer comes near; larger values are damage
    const double rounded = std::round(dotsPerInch);
    return rounded >= 1 && rounded <= largest ? static_cast<int>(rounded) : 0;
}

bool startsWith(QByteArrayView bytes, QByteArrayView prefix)
{
    return bytes.size() >= prefix.size() && bytes.first(prefix.size()) == prefix;
}

/// The bytes from `offset` on, at most `length`; empty when that lies outside.
QByteArrayView part(QByteArrayView bytes, quint64 offset, quint64 length)
{
    const auto size = static_cast<quint64>(bytes.size());
    if (offset > size || length > size - offset)
        return {};
    return bytes.sliced(static_cast<qsizetype>(offset), static_cast<qsizetype>(length));
}

/// Integers of a TIFF block in its byte order; 0 outside of it.
class TiffReader
{
public:
    explicit TiffReader(QByteArrayView bytes) : m_bytes(bytes), m_big(startsWith(bytes, "MM")) {}

    [[nodiscard]] quint16 u16(quint64 offset) const
    {
        const QByteArrayView p = part(m_bytes, offset, 2);
        return p.isEmpty() ? quint16{0}
               : m_big     ? qFromBigEndian<quint16>(p.data())
                           : qFromLittleEndian<quint16>(p.data());
    }
    [[nodiscard]] quint32 u32(quint64 offset) const
    {
        const QByteArrayView p = part(m_bytes, offset, 4);
        return p.isEmpty() ? quint32{0}
               : m_big     ? qFromBigEndian<quint32>(p.data())
                           : qFromLittleEndian<quint32>(p.data());
    }
    [[nodiscard]] double rational(quint64 offset) const
    {
        const quint32 denominator = u32(offset + 4);
        return denominator == 0 ? 0 : double{static_cast<double>(u32(offset))} / denominator;
    }

private:
    QByteArrayView m_bytes;
    bool m_big;
};

PictureMetadata pngMetadata(QByteArrayView bytes)
{
    PictureMetadata metadata;
    for (quint64 offset = 8; part(bytes, offset, 12).size() == 12;) {
        const quint64 length = qFromBigEndian<quint32>(part(bytes, offset, 4).data());
        const QByteArrayView type = part(bytes, offset + 4, 4);
        const QByteArrayView data = part(bytes, offset + 8, length);
        if (type == "IDAT" || data.size() != static_cast<qsizetype>(length))
            break;
        if (type == "pHYs" && length == 9 && data[8] == 1) { // unit 1: dots per metre
            metadata.dpiX = wholeDpi(qFromBigEndian<quint32>(data.data()) * metresPerInch);
            metadata.dpiY = wholeDpi(qFromBigEndian<quint32>(data.data() + 4) * metresPerInch);
        } else if (type == "eXIf") {
            metadata.orientation = readTiffMetadata(data).orientation;
        }
        offset += 12 + length;
    }
    return metadata;
}

PictureMetadata jpegMetadata(QByteArrayView bytes)
{
    constexpr uchar startOfScan = 0xDA;
    constexpr uchar app0 = 0xE0;
    constexpr uchar app1 = 0xE1;
    PictureMetadata jfif;
    PictureMetadata exif;
    quint64 offset = 2;
    while (part(bytes, offset, 4).size() == 4) {
        const auto marker = static_cast<uchar>(bytes[static_cast<qsizetype>(offset) + 1]);
        if (static_cast<uchar>(bytes[static_cast<qsizetype>(offset)]) != 0xFF || marker == startOfScan)
            break;
        if (marker == 0xFF) { // padding
            ++offset;
            continue;
        }
        const quint64 length = qFromBigEndian<quint16>(bytes.data() + offset + 2);
        if (length < 2)
            break;
        const QByteArrayView data = part(bytes, offset + 4, length - 2);
        if (marker == app0 && startsWith(data, QByteArrayView("JFIF\0", 5)) && data.size() >= 12) {
            const double unit = data[7] == 1 ? 1 : data[7] == 2 ? 2.54 : 0; // inch, centimetre, only an aspect ratio
            jfif.dpiX = wholeDpi(qFromBigEndian<quint16>(data.data() + 8) * unit);
            jfif.dpiY = wholeDpi(qFromBigEndian<quint16>(data.data() + 10) * unit);
        } else if (marker == app1 && startsWith(data, QByteArrayView("Exif\0\0", 6))) {
            exif = readTiffMetadata(data.sliced(6));
        }
        offset += 2 + length;
    }
    const bool measured = jfif.dpiX > 0 && jfif.dpiY > 0;
    return {.dpiX = measured ? jfif.dpiX : exif.dpiX,
            .dpiY = measured ? jfif.dpiY : exif.dpiY,
            .orientation = exif.orientation};
}

PictureMetadata webpMetadata(QByteArrayView bytes)
{
    for (quint64 offset = 12; part(bytes, offset, 8).size() == 8;) {
        const quint64 length = qFromLittleEndian<quint32>(part(bytes, offset + 4, 4).data());
        if (part(bytes, offset, 4) == "EXIF") {
            const QByteArrayView data = part(bytes, offset + 8, length);
            const bool prefixed = startsWith(data, QByteArrayView("Exif\0\0", 6)); // by some writers, against the rules
            return readTiffMetadata(prefixed ? data.sliced(6) : data);
        }
        offset += 8 + length + length % 2;
    }
    return {};
}

PictureMetadata bmpMetadata(QByteArrayView bytes)
{
    constexpr quint32 infoHeaderSize = 40;
    const QByteArrayView header = part(bytes, 14, infoHeaderSize);
    if (header.isEmpty() || qFromLittleEndian<quint32>(header.data()) < infoHeaderSize)
        return {};
    return {.dpiX = wholeDpi(qFromLittleEndian<qint32>(header.data() + 24) * metresPerInch),
            .dpiY = wholeDpi(qFromLittleEndian<qint32>(header.data() + 28) * metresPerInch)};
}

} // namespace

PictureFormat pictureFormat(QByteArrayView bytes)
{
    constexpr QByteArrayView heicBrands[] = {"heic", "heix", "heim", "heis", "hevc", "mif1", "msf1"};
    if (startsWith(bytes, "\x89PNG\r\n\x1a\n"))
        return PictureFormat::png;
    if (startsWith(bytes, "\xff\xd8\xff"))
        return PictureFormat::jpeg;
    if (startsWith(bytes, QByteArrayView("II*\0", 4)) || startsWith(bytes, QByteArrayView("MM\0*", 4)))
        return PictureFormat::tiff;
    if (startsWith(bytes, "GIF87a") || startsWith(bytes, "GIF89a"))
        return PictureFormat::gif;
    if (startsWith(bytes, "RIFF") && part(bytes, 8, 4) == "WEBP")
        return PictureFormat::webp;
    if (startsWith(bytes, "icns"))
        return PictureFormat::icns;
    if (part(bytes, 4, 4) == "ftyp") {
        for (const QByteArrayView brand : heicBrands) {
            if (part(bytes, 8, 4) == brand)
                return PictureFormat::heic;
        }
    }
    if (startsWith(bytes, "BM"))
        return PictureFormat::bmp;
    return PictureFormat::unknown;
}

PictureMetadata readTiffMetadata(QByteArrayView bytes)
{
    constexpr quint16 orientationTag = 274;
    constexpr quint16 xResolutionTag = 282;
    constexpr quint16 yResolutionTag = 283;
    constexpr quint16 unitTag = 296;
    constexpr quint16 shortType = 3;
    constexpr quint16 rationalType = 5;

    const TiffReader tiff(bytes);
    if ((!startsWith(bytes, "II") && !startsWith(bytes, "MM")) || tiff.u16(2) != 42)
        return {};
    const quint64 directory = tiff.u32(4);
    const quint64 entries = tiff.u16(directory);
    double x = 0;
    double y = 0;
    int unit = 2;
    PictureMetadata metadata;
    for (quint64 entry = directory + 2; entry < directory + 2 + 12 * entries; entry += 12) {
        const quint16 tag = tiff.u16(entry);
        const quint16 type = tiff.u16(entry + 2);
        if (type == shortType && tag == orientationTag) {
            const int orientation = tiff.u16(entry + 8);
            metadata.orientation = orientation >= 1 && orientation <= 8 ? orientation : 1;
        } else if (type == shortType && tag == unitTag) {
            unit = tiff.u16(entry + 8);
        } else if (type == rationalType && tag == xResolutionTag) {
            x = tiff.rational(tiff.u32(entry + 8));
        } else if (type == rationalType && tag == yResolutionTag) {
            y = tiff.rational(tiff.u32(entry + 8));
        }
    }
    const double perInch = unit == 2 ? 1 : unit == 3 ? 2.54 : 0; // inch, centimetre, only an aspect ratio
    metadata.dpiX = wholeDpi(x * perInch);
    metadata.dpiY = wholeDpi(y * perInch);
    return metadata;
}

PictureMetadata readPictureMetadata(PictureFormat format, QByteArrayView bytes)
{
    switch (format) {
    case PictureFormat::png:
        return pngMetadata(bytes);
    case PictureFormat::jpeg:
        return jpegMetadata(bytes);
    case PictureFormat::tiff:
        return readTiffMetadata(bytes);
    case PictureFormat::webp:
        return webpMetadata(bytes);
    case PictureFormat::bmp:
        return bmpMetadata(bytes);
    default:
        return {};
    }
}

} // namespace velmora
