#include "render_fixture.h"

#include "render/picture_metadata.h"

#include <filesystem>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

const QColor arrowBlue = QColor::fromRgbF(0.1F, 0.42F, 0.92F);
const QColor none(0, 0, 0, 0);

class Arrows : public RenderTest
{
protected:
    [[nodiscard]] fs::path kept(const std::string& name) const
    {
        return fs::path(path("support")) / "Velmora" / "BuiltInArrows" / name;
    }
};

TEST_F(Arrows, areDrawnAsDesigned)
{
    struct Pixel {
        int x;
        int y; ///< upward
        QColor color;
    };
    const QColor white(255, 255, 255);
    const QColor gray = QColor::fromRgbF(0.72F, 0.72F, 0.72F, 0.95F);
    const struct {
        const char* id;
        std::vector<Pixel> pixels;
        QRect ink; ///< x, y from the top, give or take a pixel
    } cases[] = {
        {"arrow_blue_curved",
         {{300, 86, QColor::fromRgbF(0.12F, 0.45F, 0.95F)},
          {242, 50, none},
          {80, 84, QColor::fromRgbF(0.12F, 0.45F, 0.95F)},
          {80, 110, none}},
         {20, 58, 398, 55}},
        {"arrow_blue_bold",
         {{340, 86, arrowBlue}, {100, 86, none}, {276, 40, arrowBlue}, {276, 133, arrowBlue}, {300, 140, none}},
         {273, 31, 143, 110}},
        {"arrow_blue_chevron",
         {{60, 86, arrowBlue},
          {60, 98, arrowBlue},
          {60, 101, none},
          {30, 86, arrowBlue},
          {330, 38, arrowBlue},
          {330, 134, arrowBlue},
          {300, 60, none}},
         {27, 25, 390, 122}},
        {"arrow_blue_3d",
         {{280, 145, none},
          {275, 144, QColor::fromRgbF(0.05F, 0.22F, 0.55F)},
          {276, 37, QColor::fromRgbF(0.43F, 0.70F, 0.99F)},
          {276, 135, QColor::fromRgbF(0.10F, 0.40F, 0.89F)}},
         {273, 24, 149, 117}},
        {"arrow_white_bold", {{340, 86, white}, {100, 86, none}}, {273, 31, 143, 110}},
        {"arrow_gray_subtle", {{340, 86, gray}, {100, 86, none}}, {273, 31, 143, 110}},
        {"arrow_blue_outline",
         {{100, 86, arrowBlue}, {340, 86, none}, {273, 60, arrowBlue}, {150, 114, arrowBlue}},
         {0, 0, 0, 0}},
        {"arrow_blue_slim", {{60, 86, arrowBlue}, {60, 92, arrowBlue}, {60, 95, none}}, {33, 31, 378, 110}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        const QImage image = BuiltInArrowLibrary::draw(c.id);
        ASSERT_EQ(image.size(), QSize(440, 172));
        for (const Pixel& pixel : c.pixels)
            EXPECT_PIXEL(image, pixel.x, 171 - pixel.y, pixel.color);
        EXPECT_PIXEL(image, 0, 0, none);
        EXPECT_PIXEL(image, 439, 171, none);
        if (c.ink.isEmpty())
            continue;
        const QRect ink = inkBox(image);
        EXPECT_NEAR(ink.left(), c.ink.left(), 2);
        EXPECT_NEAR(ink.top(), c.ink.top(), 2);
        EXPECT_NEAR(ink.right(), c.ink.right(), 2);
        EXPECT_NEAR(ink.bottom(), c.ink.bottom(), 2);
    }
    EXPECT_TRUE(BuiltInArrowLibrary::draw("arrow_pro_swoosh").isNull());
    EXPECT_TRUE(BuiltInArrowLibrary::draw("arrow").isNull());
}

TEST_F(Arrows, areWrittenOnce)
{
    m_arrows.warmCache();
    std::size_t files = 0;
    for (const Arrow& arrow : BuiltInArrowLibrary::all()) {
        SCOPED_TRACE(arrow.id);
        if (!arrow.bundledFilename.empty())
            continue;
        ++files;
        const fs::path file = kept(std::string(arrow.id) + ".png");
        EXPECT_EQ(m_arrows.filePath(arrow.id), file.string());
        const PicturePtr picture = readPicture(QString::fromStdString(file.string()));
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->pointSize, QSizeF(440, 172));
        EXPECT_PIXEL(picture->pixels, 0, 0, none);
    }
    EXPECT_EQ(files, 8U);
    EXPECT_EQ(std::distance(fs::directory_iterator(kept("")), {}), 8);
}

TEST_F(Arrows, areRewrittenWhenGoneAndKeptWhenForeign)
{
    const std::string file = m_arrows.filePath("arrow_blue_slim").value();
    EXPECT_EQ(m_cache.image(file)->pixels.size(), QSize(440, 172));
    fs::remove(file);
    EXPECT_EQ(m_arrows.filePath("arrow_blue_slim"), file);
    EXPECT_TRUE(fs::exists(file));

    write("support/Velmora/BuiltInArrows/arrow_blue_slim.png", "foreign");
    EXPECT_EQ(m_arrows.filePath("arrow_blue_slim"), file);
    EXPECT_EQ(fs::file_size(file), 7U);
    EXPECT_EQ(m_arrows.previewImage("arrow_blue_slim")->pixels.size(), QSize(440, 172));
}

TEST_F(Arrows, goToTheTemporaryFolderWhenTheirOwnCannotBeWritten)
{
    write("support", "a file where the folder should be");
    const std::string victim = write("victim", "untouched");
    const fs::path target = path("velmora-arrow_blue_bold.png");
    fs::create_symlink(victim, target);

    EXPECT_EQ(m_arrows.filePath("arrow_blue_bold"), path("velmora-arrow_blue_bold.png"));
    EXPECT_EQ(fs::file_size(victim), 9U);
    EXPECT_FALSE(fs::is_symlink(target));
    EXPECT_TRUE(readPicture(QString::fromStdString(target.string())));

    write("velmora-arrow_blue_bold.png", "old");
    EXPECT_TRUE(m_arrows.filePath("arrow_blue_bold"));
    EXPECT_GT(fs::file_size(target), 3U);

    const BuiltInArrowLibrary stranded({std::nullopt, path("support"), path("missing")}, m_cache);
    EXPECT_FALSE(stranded.filePath("arrow_blue_bold"));
    EXPECT_TRUE(stranded.previewImage("arrow_blue_bold"));
}

TEST_F(Arrows, makeNoFileForUnknownNames)
{
    for (const char* id : {"", "arrow", "../../../arrow_blue_bold", "arrow_blue_bold.png"}) {
        EXPECT_FALSE(m_arrows.filePath(id)) << id;
        EXPECT_FALSE(m_arrows.previewImage(id)) << id;
    }
    EXPECT_FALSE(fs::exists(path("support")));
}

TEST_F(Arrows, shipOneAsAPicture)
{
    ASSERT_TRUE(m_folders.resources);
    EXPECT_EQ(m_arrows.filePath("arrow_pro_swoosh"), (*m_folders.resources / "Arrows/arrow_pro_swoosh.png").string());
    const PicturePtr picture = m_arrows.previewImage("arrow_pro_swoosh");
    ASSERT_TRUE(picture);
    // It is placed 152.919 × 40.9853 points large.
    EXPECT_NEAR(picture->pointSize.width(), 152.919, 0.5);
    EXPECT_NEAR(picture->pointSize.height(), 40.9853, 0.5);
    for (const QPoint corner : {QPoint(0, 0), picture->pixels.rect().topRight(), picture->pixels.rect().bottomLeft(),
                                picture->pixels.rect().bottomRight()})
        EXPECT_EQ(picture->pixels.pixelColor(corner).alpha(), 0);
    EXPECT_GT(picture->pixels.pixelColor(picture->pixels.width() * 8 / 10, picture->pixels.height() / 2).blue(), 128);

    const BuiltInArrowLibrary without({std::nullopt, path("support"), path("")}, m_cache);
    EXPECT_FALSE(without.filePath("arrow_pro_swoosh"));
    EXPECT_FALSE(without.previewImage("arrow_pro_swoosh"));
}

TEST_F(Arrows, areRecognisedByPath)
{
    const struct {
        const char* path;
        std::optional<std::string> id;
    } cases[] = {
        {"/a/arrow_blue_bold.png", "arrow_blue_bold"},
        {"arrow_blue_3d", "arrow_blue_3d"},
        {"/missing/arrow_pro_swoosh.png", "arrow_pro_swoosh"},
        {"/tmp/x-arrow_white_bold-copy.tiff", "arrow_white_bold"},
        {"/arrow_blue_slim/logo.png", "arrow_blue_slim"},
        {"/arrow_gray_subtle/arrow_blue_slim.png", "arrow_blue_slim"},
        {"/arrow_blue_slim/and arrow_blue_curved.png", "arrow_blue_curved"},
        {"/a/Arrow_Blue_Bold.png", std::nullopt},
        {"/a/arrow.png", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(OverlayImageResolver::inferBuiltInID(c.path), c.id) << c.path;
}

TEST_F(Arrows, resolveOverlaysWhoseFileIsMissing)
{
    const std::string own = write("own.png", encodePng(quadrants(), 144));
    const auto size = [&](const std::string& path, std::optional<std::string> id) {
        const PicturePtr picture =
            OverlayImageResolver::load({.sourcePath = path, .builtInArrowID = std::move(id)}, m_arrows, m_cache);
        return picture ? picture->pointSize : QSizeF();
    };
    const QSizeF drawn(440, 172);
    EXPECT_EQ(size(own, "arrow_blue_bold"), QSizeF(16, 8));
    EXPECT_EQ(size("/missing/logo.png", "arrow_blue_bold"), drawn);
    EXPECT_EQ(size("/missing/arrow_blue_slim.png", std::nullopt), drawn);
    EXPECT_NEAR(size("/missing/arrow_pro_swoosh.png", std::nullopt).width(), 153, 0.5);
    EXPECT_EQ(size("", "arrow_blue_bold"), drawn);
    EXPECT_TRUE(size("", std::nullopt).isEmpty());
    EXPECT_TRUE(size("/missing/logo.png", std::nullopt).isEmpty());
    EXPECT_TRUE(size("/missing/logo.png", "unknown").isEmpty());
    EXPECT_TRUE(size(write("broken.png", "\x89PNG"), std::nullopt).isEmpty());

    // Without any file the drawing itself is kept, under the name by which it was asked for.
    const BuiltInArrowLibrary stranded({std::nullopt, path("own.png"), path("missing")}, m_cache);
    const DMGOverlayImage overlay{.sourcePath = "/missing/x.png", .builtInArrowID = "arrow_white_bold"};
    const PicturePtr picture = OverlayImageResolver::load(overlay, stranded, m_cache);
    ASSERT_TRUE(picture);
    EXPECT_EQ(m_cache.image("/missing/x.png"), picture);
    const PicturePtr nameless = OverlayImageResolver::load({.builtInArrowID = "arrow_white_bold"}, stranded, m_cache);
    EXPECT_EQ(m_cache.image("arrow_white_bold"), nameless);
}

TEST_F(Arrows, shareTheCacheWithOverlayPictures)
{
    const std::string file = write("logo.png", encodePng(quadrants(), 72));
    const PicturePtr first = loadImageWithAlpha(file, m_cache);
    ASSERT_TRUE(first);
    write("logo.png", encodePng(quadrants(64, 64), 72));
    EXPECT_EQ(loadImageWithAlpha(file, m_cache), first);
    m_cache.remove(file);
    m_cache.remove("never stored");
    EXPECT_EQ(loadImageWithAlpha(file, m_cache)->pixels.width(), 64);
    EXPECT_FALSE(loadImageWithAlpha(path("missing.png"), m_cache));
    write("missing.png", encodePng(quadrants(), 72));
    EXPECT_TRUE(loadImageWithAlpha(path("missing.png"), m_cache));
}

TEST_F(Arrows, leaveTheCacheWithFilesThatChange)
{
    const std::string kept = write("kept.png", encodePng(quadrants(), 72));
    const std::string saved = write("saved.png", encodePng(quadrants(), 72));
    const std::string gone = write("gone.png", encodePng(quadrants(), 72));
    for (const std::string& file : {kept, saved, gone})
        ASSERT_TRUE(loadImageWithAlpha(file, m_cache));
    const PicturePtr drawing = pictureOf(BuiltInArrowLibrary::draw("arrow_blue_slim"));
    m_cache.store(drawing, "arrow_blue_slim");
    m_cache.store(drawing, path("come.png"));

    const PicturePtr before = m_cache.image(kept);
    write("saved.png", encodePng(quadrants(64, 64), 72));
    write("come.png", encodePng(quadrants(), 72));
    fs::remove(gone);
    m_cache.forgetChanged();
    EXPECT_EQ(m_cache.image(kept), before);
    EXPECT_EQ(m_cache.image("arrow_blue_slim"), drawing) << "there never was a file";
    EXPECT_EQ(loadImageWithAlpha(saved, m_cache)->pixels.width(), 64);
    EXPECT_EQ(loadImageWithAlpha(path("come.png"), m_cache)->pixels.width(), 32);
    EXPECT_FALSE(loadImageWithAlpha(gone, m_cache));
}

} // namespace
} // namespace velmora
