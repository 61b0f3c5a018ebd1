#include "render/picture.h"

#include "diskimage/finder/icns.h"
#include "render/bundle_icon.h"
#include "render/picture_metadata.h"
#include "render_fixture.h"

#include <QBuffer>
#include <QColorSpace>
#include <QDir>
#include <QImageWriter>
#include <QtEndian>

namespace velmora
{
namespace
{

QByteArray encoded(const QImage& image, const char* format, QImageIOHandler::Transformations orientation = {})
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, format);
    writer.setQuality(100);
    writer.setTransformation(orientation);
    EXPECT_TRUE(writer.write(image)) << format;
    return bytes;
}

QByteArray sample(const char* name)
{
    QFile file(QStringLiteral(VELMORA_TEST_SOURCE_DIR "/tests/render/samples/") + QString::fromLatin1(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

QImage withDensity(QImage image, int perMetreX, int perMetreY)
{
    image.setDotsPerMeterX(perMetreX);
    image.setDotsPerMeterY(perMetreY);
    return image;
}

template <typename T>
void appendBig(QByteArray& bytes, T value)
{
    value = qToBigEndian(value);
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

/// A TIFF block with an orientation and a resolution.
QByteArray exif(quint16 orientation, quint32 dpi = 0)
{
    QByteArray block("MM\0*", 4);
    appendBig<quint32>(block, 8);
    appendBig<quint16>(block, 4);
    const auto entry = [&](quint16 tag, quint16 type, quint32 value) {
        appendBig(block, tag);
        appendBig(block, type);
        appendBig<quint32>(block, 1);
        appendBig(block, value);
    };
    entry(274, 3, quint32{orientation} << 16);
    entry(282, 5, 62);
    entry(283, 5, 62);
    entry(296, 3, 2U << 16);
    appendBig<quint32>(block, 0);
    appendBig(block, dpi);
    appendBig<quint32>(block, 1);
    return block;
}

/// A JPEG file with an EXIF segment first.
QByteArray jpegWithExif(const QByteArray& jpeg, const QByteArray& block)
{
    QByteArray segment("\xFF\xE1", 2);
    appendBig(segment, static_cast<quint16>(block.size() + 8));
    segment.append("Exif\0\0", 6).append(block);
    return jpeg.left(2) + segment + jpeg.mid(2);
}

/// A JPEG file whose JFIF header has this unit.
QByteArray jpegWithUnit(QByteArray jpeg, char unit)
{
    EXPECT_EQ(jpeg.mid(6, 4), "JFIF");
    jpeg[13] = unit;
    return jpeg;
}

QByteArray tiffWithUnit(QByteArray tiff, char unit)
{
    const qsizetype entry = tiff.indexOf(QByteArray("\x28\x01\x03\x00\x01\x00\x00\x00", 8));
    EXPECT_GT(entry, 0);
    tiff[entry + 8] = unit;
    return tiff;
}

QByteArray pngWithoutDensity(QByteArray png)
{
    return png.remove(png.indexOf("pHYs") - 4, 21);
}

QByteArray icnsOf(const QImage& image)
{
    const QByteArray png = encoded(image, "png");
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(png.constData());
    const diskimage::Bytes icns = diskimage::finder::writeIcns(
        {{"icnV", {0, 0, 0, 0}}, {"ic10", {1, 2, 3}}, {"ic07", diskimage::Bytes(bytes, bytes + png.size())}});
    return QByteArray(reinterpret_cast<const char*>(icns.data()), static_cast<qsizetype>(icns.size()));
}

struct Sample {
    const char* name;
    QByteArray bytes;
    int tolerance;
};

std::vector<Sample> samples()
{
    return {{"png", encoded(quadrants(), "png"), 0},
            {"palette png", encoded(quadrants().convertToFormat(QImage::Format_Indexed8), "png"), 0},
            {"jpeg", encoded(quadrants(), "jpeg"), 6},
            {"tiff", encoded(quadrants(), "tiff"), 0},
            {"gif", sample("quadrants.gif"), 0},
            {"webp", encoded(quadrants(), "webp"), 12},
            {"heic", sample("quadrants.heic"), 12},
            {"bmp", encoded(quadrants(), "bmp"), 0},
            {"icns", icnsOf(quadrants()), 0}};
}

void expectQuarters(const QImage& image, const std::array<QColor, 4>& colors, int tolerance)
{
    const int right = image.width() - 4;
    const int bottom = image.height() - 4;
    const QPoint places[] = {{3, 3}, {right, 3}, {3, bottom}, {right, bottom}};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_TRUE(alike(image.pixelColor(places[i]), colors[i], tolerance))
            << i << ": " << text(image.pixelColor(places[i]));
}

TEST(Picture, decodesEveryFormat)
{
    for (const Sample& s : samples()) {
        SCOPED_TRACE(s.name);
        const PicturePtr picture = decodePicture(s.bytes);
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->pixels.size(), QSize(32, 16));
        expectQuarters(picture->pixels, {red, green, blue, yellow}, s.tolerance);
    }
}

TEST(Picture, measuresPointsByTheFilesResolution)
{
    const QImage plain = quadrants(200, 100);
    const QByteArray jpeg = encoded(withDensity(plain, 5669, 5669), "jpeg");
    const QByteArray tiff = encoded(withDensity(plain, 5669, 5669), "tiff");
    const struct {
        const char* name;
        QByteArray bytes;
        QSizeF points;
    } cases[] = {
        {"png of 144 dpi", encodePng(plain, 144), {100, 50}},
        {"png of 72 dpi", encodePng(plain, 72), {200, 100}},
        {"png with different densities", encoded(withDensity(plain, 2835, 11339), "png"), {200, 25}},
        {"png that says nothing", pngWithoutDensity(encodePng(plain, 144)), {200, 100}},
        {"png with an absurd density", encoded(withDensity(plain, 1, 2000000000), "png"), {200, 100}},
        {"jpeg of 144 dpi", jpeg, {100, 50}},
        {"jpeg per centimetre", jpegWithUnit(jpeg, 2), {200 * 72 / 366.0, 100 * 72 / 366.0}},
        {"jpeg with an aspect ratio only", jpegWithUnit(jpeg, 0), {200, 100}},
        {"jpeg with a camera's 300 dpi", jpegWithExif(jpegWithUnit(jpeg, 0), exif(1, 300)), {48, 24}},
        {"jpeg turned, with a camera's 36 dpi", jpegWithExif(jpegWithUnit(jpeg, 0), exif(6, 36)), {200, 400}},
        {"tiff of 144 dpi", tiff, {100, 50}},
        {"tiff with an aspect ratio only", tiffWithUnit(tiff, 1), {200, 100}},
        {"bmp of 144 dpi", encoded(withDensity(plain, 5669, 5669), "bmp"), {100, 50}},
        {"webp knows no resolution", encoded(withDensity(plain, 5669, 5669), "webp"), {200, 100}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const PicturePtr picture = decodePicture(c.bytes);
        ASSERT_TRUE(picture);
        EXPECT_NEAR(picture->pointSize.width(), c.points.width(), 1e-9);
        EXPECT_NEAR(picture->pointSize.height(), c.points.height(), 1e-9);
    }
}

TEST(Picture, standsUprightWhateverItsStoredOrientation)
{
    // What each of the eight orientations makes of a stored picture red green / blue yellow.
    const std::array<QColor, 4> upright[] = {
        {red, green, blue, yellow}, {green, red, yellow, blue}, {yellow, blue, green, red}, {blue, yellow, red, green},
        {red, blue, green, yellow}, {blue, red, yellow, green}, {yellow, green, blue, red}, {green, yellow, red, blue},
    };
    const QByteArray jpeg = encoded(quadrants(), "jpeg");
    for (quint16 orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        const PicturePtr picture = decodePicture(jpegWithExif(jpeg, exif(orientation)));
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->pixels.size(), orientation < 5 ? QSize(32, 16) : QSize(16, 32));
        expectQuarters(picture->pixels, upright[orientation - 1], 6);
    }
    const PicturePtr tiff = decodePicture(encoded(quadrants(), "tiff", QImageIOHandler::TransformationRotate90));
    ASSERT_TRUE(tiff);
    expectQuarters(tiff->pixels, upright[5], 0);
}

TEST(Picture, readsOrientationAndResolutionOfEveryContainer)
{
    const QByteArray block = exif(3, 300);
    QByteArray length;
    appendBig(length, static_cast<quint32>(block.size()));
    QByteArray littleLength(length);
    std::reverse(littleLength.begin(), littleLength.end());
    const struct {
        const char* name;
        PictureFormat format;
        QByteArray bytes;
        int orientation;
        int dpi;
    } cases[] = {
        {"png", PictureFormat::png, "\x89PNG\r\n\x1a\n" + length + "eXIf" + block + "crc.", 3, 0},
        {"png, after the pixels", PictureFormat::png,
         QByteArray("\x89PNG\r\n\x1a\n") + QByteArray("\0\0\0\0IDATcrc.", 12) + length + "eXIf" + block + "crc.", 1, 0},
        {"webp", PictureFormat::webp, QByteArray("RIFF....WEBPVP8 \3\0\0\0abc.EXIF", 28) + littleLength + block, 3,
         300},
        {"tiff", PictureFormat::tiff, block, 3, 300},
        {"tiff, orientation 9", PictureFormat::tiff, exif(9, 300), 1, 300},
        {"tiff whose directory is outside", PictureFormat::tiff, QByteArray("II*\0\xff\xff\xff\xff", 8), 1, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const PictureMetadata metadata = readPictureMetadata(c.format, c.bytes);
        EXPECT_EQ(metadata.orientation, c.orientation);
        EXPECT_EQ(metadata.dpiX, c.dpi);
        EXPECT_EQ(metadata.dpiY, c.dpi);
    }
}

TEST(Picture, convertsColorsToSRgb)
{
    QImage wide(8, 8, QImage::Format_RGB32);
    wide.fill(QColor(128, 200, 64));
    wide.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    for (const char* format : {"png", "jpeg", "tiff"}) {
        SCOPED_TRACE(format);
        const PicturePtr picture = decodePicture(encoded(wide, format));
        ASSERT_TRUE(picture);
        EXPECT_TRUE(alike(picture->pixels.pixelColor(4, 4), QColor(103, 202, 19), 4))
            << text(picture->pixels.pixelColor(4, 4));
    }
}

TEST(Picture, keepsTransparency)
{
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(QColor(200, 100, 50, 128));
    for (const char* format : {"png", "tiff", "webp"}) {
        SCOPED_TRACE(format);
        const PicturePtr picture = decodePicture(encoded(image, format));
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->pixels.format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_TRUE(alike(picture->pixels.pixelColor(4, 4), QColor(200, 100, 50, 128), 3));
    }
}

TEST(Picture, refusesWhatIsNone)
{
    // Sound, small in the file and, at a bit a pixel, in memory too.
    QImage huge(200'000, 1'001, QImage::Format_Mono);
    huge.fill(0);
    const struct {
        const char* name;
        QByteArray bytes;
    } cases[] = {
        {"nothing", ""},
        {"text", "This is no picture."},
        {"vector graphics", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8\" height=\"8\"/>"},
        {"a portable pixmap", "P6 1 1 255\nabc"},
        {"more pixels than the limit", encoded(huge, "png")},
        {"an icon family without pictures", QByteArray("icns\0\0\0\x08", 8)},
        {"another file of the same family as HEIC", QByteArray("\0\0\0\x10"
                                                               "ftypisom\0\0\0\0",
                                                               16)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_FALSE(decodePicture(c.bytes));
    }
}

TEST(Picture, survivesDamage)
{
    // The image libraries have much to say about damaged files.
    const QtMessageHandler loud = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    for (const Sample& s : samples()) {
        SCOPED_TRACE(s.name);
        for (qsizetype size = 0; size < s.bytes.size(); size += 1 + s.bytes.size() / 60)
            decodePicture(s.bytes.left(size));
        for (qsizetype i = 0; i < s.bytes.size(); i += 1 + s.bytes.size() / 250) {
            for (const char value : {'\x00', '\x01', '\x7F', '\xFF'}) {
                QByteArray damaged = s.bytes;
                damaged[i] = value;
                const PicturePtr picture = decodePicture(damaged);
                EXPECT_TRUE(!picture ||
                            qint64{picture->pixels.width()} * picture->pixels.height() <= largestPicturePixels);
            }
        }
    }
    qInstallMessageHandler(loud);
}

class PictureFiles : public RenderTest
{
protected:
    /// A bundle whose information file names this icon file, with `App.icns` in its resources.
    std::string bundle(const std::string& entry)
    {
        const QString root = QString::fromStdString(path("Larkspur.app"));
        EXPECT_TRUE(QDir().mkpath(root + "/Contents/Resources"));
        write("Larkspur.app/Contents/Info.plist", "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" +
                                                      QByteArray::fromStdString(entry) + "</dict></plist>");
        write("Larkspur.app/Contents/Resources/App.icns", icnsOf(quadrants()));
        write("Larkspur.app/outside.icns", icnsOf(quadrants()));
        QFile::link(QString::fromStdString(write("beside.icns", icnsOf(quadrants()))),
                    root + "/Contents/Resources/Leaving.icns");
        return root.toStdString();
    }
};

TEST_F(PictureFiles, readsRegularFilesOnly)
{
    EXPECT_TRUE(readPicture(QString::fromStdString(write("a picture.jpeg", encoded(quadrants(), "png")))));
    for (const std::string& name : {path("missing.png"), path(""), std::string("/dev/zero"), std::string()})
        EXPECT_FALSE(readPicture(QString::fromStdString(name))) << name;
}

TEST_F(PictureFiles, findsTheIconOfABundle)
{
    const struct {
        const char* name;
        const char* entry;
        bool found;
    } cases[] = {
        {"with its extension", "<key>CFBundleIconFile</key><string>App.icns</string>", true},
        {"without its extension", "<key>CFBundleIconFile</key><string>App</string>", true},
        {"missing", "<key>CFBundleIconFile</key><string>Other</string>", false},
        {"outside", "<key>CFBundleIconFile</key><string>../../outside.icns</string>", false},
        {"a link that leads out", "<key>CFBundleIconFile</key><string>Leaving</string>", false},
        {"the folder itself", "<key>CFBundleIconFile</key><string>..</string>", false},
        {"an absolute path", "<key>CFBundleIconFile</key><string>/dev/zero</string>", false},
        {"no text", "<key>CFBundleIconFile</key><integer>7</integer>", false},
        {"no entry", "", false},
        {"no property list", "<broken", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const PicturePtr icon = bundleIcon(bundle(c.entry));
        EXPECT_EQ(icon != nullptr, c.found);
    }
    EXPECT_FALSE(bundleIcon(path("Missing.app")));
}

} // namespace
} // namespace velmora
