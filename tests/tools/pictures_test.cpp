#include "diskimage/base/bytes.h"
#include "diskimage/base/checksum.h"
#include "diskimage/finder/icns.h"
#include "platform/file_tree.h"
#include "tools/tool_fixture.h"

#include <QBuffer>
#include <QImage>

#include <tiffio.h>

#include <cmath>
#include <memory>

namespace fs = std::filesystem;
using namespace velmora;
using namespace velmora::test;
using namespace velmora::diskimage;

namespace
{

class Pictures : public ToolTest
{
protected:
    /// A picture in which every pixel differs, stamped with a resolution (dots per metre).
    QImage picture(int width, int height, bool opaque, int perMetre = 3780) const
    {
        QImage image(width, height, opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                image.setPixel(
                    x, y,
                    qRgba(x * 255 / width, y * 255 / height, (x + y) & 0xFF, opaque ? 255 : (x * 7 + 128) & 0xFF));
        }
        image.setDotsPerMeterX(perMetre);
        image.setDotsPerMeterY(perMetre);
        return image;
    }
    fs::path save(const std::string& name, const QImage& image) const
    {
        fs::create_directories(path(name).parent_path());
        EXPECT_TRUE(image.save(QString::fromStdString(path(name)), "png"));
        return path(name);
    }
    QImage load(const fs::path& file) const { return QImage(QString::fromStdString(file)); }
};

/// The same chunk as in the file with another content and a right checksum.
std::string withChunk(std::string png, const char* type, std::size_t offset, char value)
{
    const auto start = png.find(type);
    const auto length = getBE32(viewOf(png).data() + start - 4);
    png[start + 4 + offset] = value;
    std::uint8_t crc[4];
    putBE32(crc, crc32(0, viewOf(png).subspan(start, 4 + length)));
    png.replace(start + 4 + length, 4, textOf(crc));
    return png;
}

/// One directory of a TIFF file.
struct TiffPicture {
    std::uint32_t width = 0, height = 0;
    float dpi = 0;
    std::uint16_t unit = 0, samples = 0, compression = 0, predictor = 0, extraCount = 0, extra = 0;
    std::vector<std::uint32_t> argb{}; ///< rows from the top
};
std::vector<TiffPicture> readTiff(const fs::path& file)
{
    std::vector<TiffPicture> pictures;
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(file.c_str(), "r"), &TIFFClose);
    do {
        TiffPicture p;
        std::uint16_t* kinds = nullptr;
        TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &p.width);
        TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &p.height);
        TIFFGetField(tiff.get(), TIFFTAG_XRESOLUTION, &p.dpi);
        TIFFGetField(tiff.get(), TIFFTAG_RESOLUTIONUNIT, &p.unit);
        TIFFGetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, &p.samples);
        TIFFGetField(tiff.get(), TIFFTAG_COMPRESSION, &p.compression);
        TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_PREDICTOR, &p.predictor);
        if (TIFFGetField(tiff.get(), TIFFTAG_EXTRASAMPLES, &p.extraCount, &kinds))
            p.extra = kinds[0];
        p.argb.resize(std::size_t{p.width} * p.height);
        EXPECT_TRUE(TIFFReadRGBAImageOriented(tiff.get(), p.width, p.height, p.argb.data(), ORIENTATION_TOPLEFT));
        pictures.push_back(std::move(p));
    } while (TIFFReadDirectory(tiff.get()));
    return pictures;
}

/// The largest difference of a channel between a TIFF picture and an image, both premultiplied.
int difference(const TiffPicture& tiff, const QImage& image)
{
    const QImage wanted = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    int most = 0;
    for (int y = 0; y < wanted.height(); ++y) {
        for (int x = 0; x < wanted.width(); ++x) {
            const std::uint32_t abgr = tiff.argb[static_cast<std::size_t>(y * wanted.width() + x)];
            const QRgb pixel = reinterpret_cast<const QRgb*>(wanted.constScanLine(y))[x];
            most = std::max(
                {most, std::abs(int(TIFFGetR(abgr)) - qRed(pixel)), std::abs(int(TIFFGetG(abgr)) - qGreen(pixel)),
                 std::abs(int(TIFFGetB(abgr)) - qBlue(pixel)), std::abs(int(TIFFGetA(abgr)) - qAlpha(pixel))});
        }
    }
    return most;
}

} // namespace

TEST_F(Pictures, areStampedWithAResolutionAndOtherwiseLeftAlone)
{
    const QImage image = picture(30, 20, false);
    const fs::path file = save("a.png", image);
    EXPECT_EQ(succeed("sips", {"-s", "dpiWidth", "144", "-s", "dpiHeight", "72", file}), file.string() + "\n");
    QImage stamped = load(file);
    EXPECT_EQ(stamped.dotsPerMeterX(), 5669);
    EXPECT_EQ(stamped.dotsPerMeterY(), 2835);
    EXPECT_EQ(stamped, image);
    const std::string once = readAll(file);
    succeed("sips", {"-s", "dpiWidth", "144", file});
    EXPECT_EQ(readAll(file), once) << "the chunk is replaced, the other side kept";

    // A file without the chunk, reached through a link, with bytes behind its end.
    std::string bare = once;
    const auto chunk = bare.find("pHYs") - 4;
    bare.erase(chunk, 21);
    write("bare.png", bare + "tail");
    fs::create_symlink("bare.png", path("link.png"));
    succeed("sips", {"-s", "dpiHeight", "144", path("link.png")});
    EXPECT_TRUE(fs::is_symlink(path("link.png")));
    EXPECT_EQ(load(path("bare.png")).dotsPerMeterX(), 2835);
    EXPECT_EQ(load(path("bare.png")).dotsPerMeterY(), 5669);
    EXPECT_TRUE(readAll(path("bare.png")).ends_with("tail"));
}

TEST_F(Pictures, thatAreDamagedAreNotStamped)
{
    const std::string sound = readAll(save("a.png", picture(30, 20, true)));
    const auto put = [&](std::size_t offset, const char* bytes, std::size_t count) {
        std::string damaged = sound;
        return damaged.replace(offset, count, bytes, count);
    };
    const auto pixels = sound.find("IDAT");
    std::vector<std::pair<std::string, std::string>> cases = {
        {"empty", ""},
        {"JPEG", "\xFF\xD8\xFF\xE0 JFIF"},
        {"length beyond the end", put(pixels - 4, "\x00\xFF\xFF\xFF", 4)},
        {"largest length", put(pixels - 4, "\xFF\xFF\xFF\xFF", 4)},
        {"wrong checksum", put(pixels + 5, "\xAA", 1)},
        {"no header", sound.substr(0, 8) + sound.substr(8 + 25)},
        {"no width", withChunk(withChunk(sound, "IHDR", 2, 0), "IHDR", 3, 0)},
        {"absurd width", withChunk(sound, "IHDR", 0, '\xFF')},
    };
    for (std::size_t length = 1; length < sound.size(); length += 7)
        cases.emplace_back("cut at " + std::to_string(length), sound.substr(0, length));
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        const fs::path file = write("damaged.png", bytes);
        fail("sips", {"-s", "dpiWidth", "72", "-s", "dpiHeight", "72", file});
        EXPECT_EQ(readAll(file), bytes);
    }
    EXPECT_EQ(namesIn(path("")).size(), 5U) << "no temporary file stays";
}

TEST_F(Pictures, ofTwoResolutionsAreJoinedInOneTiff)
{
    for (const bool opaque : {true, false}) {
        SCOPED_TRACE(opaque);
        const QImage images[] = {picture(300, 200, opaque, 2835), picture(600, 400, opaque, 5669)};
        const ChildResult result = run("tiffutil", {"-cathidpicheck", save("1.png", images[0]),
                                                    save("2.png", images[1]), "-out", path("out.tiff")});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.error, "");
        const auto pictures = readTiff(path("out.tiff"));
        ASSERT_EQ(pictures.size(), 2U);
        for (std::size_t i = 0; i < 2; ++i) {
            const TiffPicture& p = pictures[i];
            EXPECT_EQ(p.width, 300 * (i + 1));
            EXPECT_EQ(p.height, 200 * (i + 1));
            EXPECT_EQ(p.dpi, i == 0 ? 72 : 144);
            EXPECT_EQ(p.unit, RESUNIT_INCH);
            EXPECT_EQ(p.compression, COMPRESSION_LZW);
            EXPECT_EQ(p.predictor, PREDICTOR_NONE);
            EXPECT_EQ(p.samples, opaque ? 3 : 4);
            EXPECT_EQ(p.extra, opaque ? 0 : EXTRASAMPLE_ASSOCALPHA);
            EXPECT_LE(difference(p, images[i]), opaque ? 0 : 1);
        }
    }
}

TEST_F(Pictures, thatDoNotMatchAreJoinedWithAWarning)
{
    const fs::path first = save("1.png", picture(30, 20, true, 2835));
    const struct {
        const char* name;
        QImage second;
        const char* says;
    } cases[] = {{"same pixels", picture(30, 20, true, 5669), "pixels"},
                 {"one row more", picture(60, 41, true, 5669), "60 x 41"},
                 {"same resolution", picture(60, 40, true, 2835), "72 dots per inch"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ChildResult result =
            run("tiffutil", {"-cathidpicheck", first, save("2.png", c.second), "-out", path("out.tiff")});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_NE(result.error.find(c.says), std::string::npos) << result.error;
        EXPECT_EQ(readTiff(path("out.tiff")).size(), 2U);
    }
    const std::string sound = readAll(first);
    for (const std::string& damaged : {sound.substr(0, 60), withChunk(sound, "IHDR", 1, 0x10), std::string("x")}) {
        fs::remove(path("out.tiff"));
        fail("tiffutil", {"-cathidpicheck", first, write("2.png", damaged), "-out", path("out.tiff")});
        EXPECT_FALSE(fs::exists(path("out.tiff")));
    }
}

TEST_F(Pictures, ofAnIconSetComeBackFromTheIconFile)
{
    for (const auto& slot : finder::standardIconSlots())
        save("a.iconset/" + std::string(slot.fileName), picture(int(slot.pixels), int(slot.pixels), false));
    succeed("iconutil", {"-c", "icns", path("a.iconset/"), "-o", path("a.icns")});
    const std::string file = readAll(path("a.icns"));
    for (const finder::IcnsElement& element : finder::readIcns(viewOf(file))) {
        const bool small = element.type == "ic04" || element.type == "ic05";
        EXPECT_EQ(textOf(ByteView(element.data).first(4)), small ? "ARGB" : "\x89PNG") << element.type;
    }
    succeed("iconutil", {"-c", "iconset", path("a.icns"), "-o", path("b.iconset")});
    for (const auto& slot : finder::standardIconSlots()) {
        SCOPED_TRACE(slot.fileName);
        EXPECT_EQ(load(path("b.iconset") / slot.fileName).convertToFormat(QImage::Format_ARGB32),
                  load(path("a.iconset") / slot.fileName).convertToFormat(QImage::Format_ARGB32));
    }
    fail("iconutil", {"-c", "iconset", path("a.icns"), "-o", path("b.iconset")});
}

TEST_F(Pictures, ofAnIconSetMayBeIncompleteButNotWrong)
{
    save("a.iconset/icon_32x32.png", picture(32, 32, true).convertToFormat(QImage::Format_Indexed8));
    save("a.iconset/icon_128x128.png", picture(128, 128, true));
    succeed("iconutil", {"-c", "icns", path("a.iconset"), "-o", path("a.icns")});
    EXPECT_EQ(finder::readIcns(viewOf(readAll(path("a.icns")))).size(), 2U);
    fs::remove(path("a.icns"));

    const struct {
        const char* name;
        std::function<void()> spoil;
        const char* says;
    } cases[] = {
        {"a wrong size", [&] { save("a.iconset/icon_16x16.png", picture(32, 32, true)); },
         "32 x 32 pixels instead of 16 x 16"},
        {"a huge size", [&] { save("a.iconset/icon_16x16.png", picture(2000, 16, true)); }, "2000 x 16"},
        {"no PNG", [&] { write("a.iconset/icon_16x16.png", "x"); }, "not a PNG"},
        {"an unknown name", [&] { save("a.iconset/icon_64x64.png", picture(64, 64, true)); }, "icon_64x64.png"},
        {"nothing", [&] {}, "no picture"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fs::remove_all(path("a.iconset"));
        fs::create_directory(path("a.iconset"));
        c.spoil();
        const std::string error = fail("iconutil", {"-c", "icns", path("a.iconset"), "-o", path("a.icns")});
        EXPECT_NE(error.find(c.says), std::string::npos) << error;
        EXPECT_FALSE(fs::exists(path("a.icns")));
    }
    for (const std::string& icon :
         {std::string("icns\0\0\0\x08", 8), std::string("icns\0\0\0\x10ic04\0\0\xFF\xFF", 16), std::string("x")}) {
        fail("iconutil", {"-c", "iconset", write("b.icns", icon), "-o", path("b.iconset")});
        EXPECT_FALSE(fs::exists(path("b.iconset")));
    }
}
