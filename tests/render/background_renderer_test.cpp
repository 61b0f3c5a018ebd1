#include "render_fixture.h"

#include "render/picture_metadata.h"

#include <limits>
#include <thread>

namespace velmora
{
namespace
{

class Background : public RenderTest
{
protected:
    /// A project of 60 × 60 points that shows `quadrants(40, 20)` on magenta.
    DMGProject pictureProject(BackgroundImageFit fit)
    {
        DMGProject project = emptyProject(60, 60);
        project.backgroundKind = BackgroundKind::image;
        project.backgroundImagePath = write("picture.png", encodePng(quadrants(40, 20), 300));
        project.backgroundColor = {1, 0, 1, 1};
        project.backgroundImageFit = fit;
        return project;
    }
};

TEST_F(Background, runsTheGradientAlongItsAngle)
{
    const QColor start(255, 0, 0);
    const QColor end(0, 0, 255);
    const struct {
        const char* name;
        double angle;
        QPoint first;
        QPoint last;
        QPoint beside; ///< shares the first pixel's colour
    } cases[] = {
        {"left to right", 0, {0, 10}, {59, 10}, {0, 29}},
        {"bottom to top", 90, {30, 29}, {30, 0}, {59, 29}},
        {"right to left", 180, {59, 10}, {0, 10}, {59, 0}},
        {"top to bottom", 270, {30, 0}, {30, 29}, {0, 0}},
        {"a full turn more", 360 + 270, {30, 0}, {30, 29}, {0, 0}},
        {"from the bottom left corner", 45, {0, 29}, {59, 0}, {0, 29}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DMGProject project = emptyProject(60, 30);
        project.backgroundKind = BackgroundKind::gradient;
        project.gradientStart = {1, 0, 0, 1};
        project.gradientEnd = {0, 0, 1, 1};
        project.gradientAngle = c.angle;
        const QImage image = draw(project);
        // The end colours lie on the outer edges, half a pixel from the pixels' centres.
        EXPECT_TRUE(alike(image.pixelColor(c.first), start, 5)) << text(image.pixelColor(c.first));
        EXPECT_TRUE(alike(image.pixelColor(c.last), end, 5)) << text(image.pixelColor(c.last));
        EXPECT_EQ(image.pixelColor(c.beside), image.pixelColor(c.first));
        EXPECT_TRUE(alike(image.pixelColor(30, 15), QColor(127, 0, 127), 6)) << text(image.pixelColor(30, 15));
    }
}

TEST_F(Background, drawsTheFactoryGradientExactly)
{
    DMGProject project = emptyProject(600, 372);
    project.backgroundKind = BackgroundKind::gradient;
    const QImage image = draw(project);
    EXPECT_EQ(image.pixelColor(300, 0), QColor(255, 255, 255));
    EXPECT_EQ(image.pixelColor(300, 371), QColor(140, 140, 148));
}

TEST_F(Background, mixesGradientColorsOfDifferentOpacityByComponent)
{
    DMGProject project = emptyProject(100, 10);
    project.backgroundKind = BackgroundKind::gradient;
    project.gradientStart = {1, 0, 0, 1};
    project.gradientEnd = {0, 0, 1, 0};
    project.gradientAngle = 0;
    EXPECT_PIXEL(draw(project), 50, 5, QColor(127, 0, 128, 127));
}

TEST_F(Background, placesThePicture)
{
    using enum BackgroundImageFit;
    const QColor back(255, 0, 255);
    const QColor none(0, 0, 0, 0);
    struct Pixel {
        int x;
        int y;
        QColor color;
    };
    const struct {
        const char* name;
        BackgroundImageFit fit;
        double scale;
        double offsetX;
        double offsetY;
        std::vector<Pixel> pixels;
    } cases[] = {
        {"fill crops",
         fill,
         1,
         0,
         0,
         {{0, 0, red}, {28, 28, red}, {31, 31, yellow}, {59, 59, yellow}, {31, 28, green}}},
        {"fit leaves bands", fit, 1, 0, 0, {{0, 14, back}, {0, 15, red}, {59, 44, yellow}, {59, 45, back}}},
        {"stretch distorts",
         stretch,
         1,
         0,
         0,
         {{0, 0, red}, {59, 0, green}, {0, 59, blue}, {28, 28, red}, {31, 31, yellow}}},
        {"fill moved right and up",
         fill,
         1,
         10,
         10,
         {{38, 18, red}, {41, 18, green}, {38, 21, blue}, {0, 49, blue}, {0, 50, none}, {59, 59, none}}},
        {"fit moved right and up",
         fit,
         1,
         10,
         10,
         {{9, 20, back}, {10, 5, red}, {10, 4, back}, {38, 18, red}, {41, 21, yellow}}},
        {"stretch moved right and up",
         stretch,
         1,
         10,
         10,
         {{9, 20, none}, {10, 0, red}, {38, 18, red}, {41, 21, yellow}, {10, 49, blue}, {10, 50, none}}},
        {"small fill leaves clear margins",
         fill,
         0.5,
         0,
         0,
         {{0, 14, none}, {0, 15, red}, {59, 44, yellow}, {59, 45, none}}},
        {"stretch has no scale", stretch, 0.1, 0, 0, {{0, 0, red}, {59, 59, yellow}}},
        {"moved out of sight", fill, 1, 500, 0, {{0, 0, none}, {59, 59, none}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DMGProject project = pictureProject(c.fit);
        project.backgroundImageScale = c.scale;
        project.backgroundImageOffsetX = c.offsetX;
        project.backgroundImageOffsetY = c.offsetY;
        const QImage image = draw(project);
        for (const Pixel& pixel : c.pixels)
            EXPECT_PIXEL(image, pixel.x, pixel.y, pixel.color);
        EXPECT_TRUE(m_warnings.empty());
    }
}

TEST_F(Background, hasASmallestPictureScale)
{
    for (const double scale : {0.05, 0.0, -2.0, std::numeric_limits<double>::quiet_NaN()}) {
        SCOPED_TRACE(scale);
        DMGProject project = pictureProject(BackgroundImageFit::fill);
        project.backgroundImageScale = scale;
        const QRectF up = BackgroundRenderer::imageDrawRect(project, *pictureOf(quadrants(40, 20)), {0, 0, 60, 60});
        EXPECT_EQ(up, QRectF(27, 28.5, 6, 3));
        EXPECT_EQ(inkBox(draw(project)), QRect(27, 28, 6, 4));
    }
}

TEST_F(Background, fillsWithTheColorWhenThereIsNoPicture)
{
    DMGProject project = pictureProject(BackgroundImageFit::fill);
    for (const std::string& file : {std::string(), path("missing.png"), write("text.png", "no picture")}) {
        SCOPED_TRACE(file);
        project.backgroundImagePath = file;
        m_warnings.clear();
        EXPECT_PIXEL(draw(project), 30, 30, QColor(255, 0, 255));
        ASSERT_EQ(m_warnings.size(), 1U);
        EXPECT_NE(m_warnings[0].find(file), std::string::npos);
    }
}

TEST_F(Background, averagesWhenItReducesALargePicture)
{
    // A fine checker pattern: anything but the average of many pixels leaves a pattern behind.
    QImage fine(3000, 2000, QImage::Format_RGB32);
    for (int y = 0; y < fine.height(); ++y) {
        for (int x = 0; x < fine.width(); ++x)
            fine.setPixel(x, y, (x / 2 + y / 2) % 2 == 0 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
    }
    DMGProject project = pictureProject(BackgroundImageFit::fill);
    m_context.background = pictureOf(fine);
    const QImage image = draw(project);
    for (int i = 0; i < 60; ++i) {
        EXPECT_TRUE(alike(image.pixelColor(i, i), QColor(127, 127, 127), 16)) << text(image.pixelColor(i, i));
        EXPECT_EQ(image.pixelColor(i, 0).alpha(), 255);
    }
}

TEST_F(Background, givesTheCanvasItsOwnGradientDirection)
{
    const struct {
        double angle;
        QPointF start;
        QPointF end;
    } cases[] = {
        {0, {0.5, 0}, {0.5, 1}}, {90, {0, 0.5}, {1, 0.5}}, {180, {0.5, 1}, {0.5, 0}}, {270, {1, 0.5}, {0, 0.5}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.angle);
        const auto [start, end] = BackgroundRenderer::gradientUnitPoints(c.angle);
        EXPECT_LT((start - c.start).manhattanLength(), 1e-9);
        EXPECT_LT((end - c.end).manhattanLength(), 1e-9);
    }
}

TEST_F(Background, drawsTheSamePictureAtBothResolutions)
{
    DMGProject project = DMGProject::starter([&](std::string_view id) { return m_arrows.filePath(id); });
    const auto single = BackgroundRenderer::pngData(project, 600, 332, m_context);
    const auto twice = BackgroundRenderer::pngData(project, 1200, 664, m_context);
    ASSERT_TRUE(single && twice);
    EXPECT_TRUE(m_warnings.empty()) << m_warnings[0];
    EXPECT_EQ(readPictureMetadata(PictureFormat::png, *single).dpiX, 72);
    EXPECT_EQ(readPictureMetadata(PictureFormat::png, *twice).dpiY, 144);

    const QImage small = QImage::fromData(*single);
    const QImage large = QImage::fromData(*twice);
    ASSERT_EQ(large.size(), small.size() * 2);
    const QImage reduced = large.scaled(small.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const int caption = 240; // glyphs are fitted to the pixels of each resolution: below here only their box counts
    int different = 0;
    for (int y = 0; y < caption; ++y) {
        for (int x = 0; x < small.width(); ++x)
            different += alike(small.pixelColor(x, y), reduced.pixelColor(x, y), 24) ? 0 : 1;
    }
    EXPECT_LT(different, 20); // a shift of the arrow by half a pixel changes hundreds
    const auto dark = [](QColor c) { return c.lightness() < 110; };
    const QRect text = inkBox(small.copy(100, caption, 500, 92), dark);
    const QRect largeText = inkBox(large.copy(200, 2 * caption, 1000, 184), dark);
    EXPECT_NEAR(text.width(), 123, 3);
    for (const auto& [one, two] : {std::pair(text.left(), largeText.left()),
                                   {text.top(), largeText.top()},
                                   {text.right(), largeText.right()},
                                   {text.bottom(), largeText.bottom()}})
        EXPECT_NEAR(two / 2.0, one, 1.6);
}

TEST_F(Background, refusesBitmapsThatCannotBe)
{
    const DMGProject project = emptyProject(60, 60);
    const QSize sizes[] = {{0, 60}, {60, -1}, {32769, 1}, {32768, 32768}, {std::numeric_limits<int>::max(), 60}};
    for (const QSize size : sizes) {
        EXPECT_FALSE(BackgroundRenderer::pngData(project, size.width(), size.height(), m_context));
        EXPECT_TRUE(BackgroundRenderer::image(project, size, true, 1, m_context).isNull());
    }
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(BackgroundRenderer::image(project, {nan, 60}, true, 1, m_context).isNull());
    EXPECT_TRUE(BackgroundRenderer::image(project, {60, 60}, true, nan, m_context).isNull());
}

TEST_F(Background, staysClearWithoutAContentArea)
{
    DMGProject project = pictureProject(BackgroundImageFit::fill);
    project.windowHeight = DMGProject::titleBarHeight;
    const auto png = BackgroundRenderer::pngData(project, 10, 10, m_context);
    ASSERT_TRUE(png);
    EXPECT_TRUE(inkBox(QImage::fromData(*png)).isEmpty());
}

TEST_F(Background, survivesEveryAbsurdNumber)
{
    using Set = std::function<void(DMGProject&, double)>;
    const std::vector<Set> numbers = {
        [](DMGProject& p, double v) { p.gradientAngle = v; },
        [](DMGProject& p, double v) { p.gradientStart.r = v; },
        [](DMGProject& p, double v) { p.backgroundImageScale = v; },
        [](DMGProject& p, double v) { p.backgroundImageOffsetX = v; },
        [](DMGProject& p, double v) { p.backgroundImageOffsetY = v; },
        [](DMGProject& p, double v) { p.windowWidth = v; },
        [](DMGProject& p, double v) { p.windowHeight = v; },
        [](DMGProject& p, double v) { p.overlayImages[0].x = v; },
        [](DMGProject& p, double v) { p.overlayImages[0].y = v; },
        [](DMGProject& p, double v) { p.overlayImages[0].width = v; },
        [](DMGProject& p, double v) { p.overlayImages[0].height = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].x = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].y = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].width = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].height = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].fontSize = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].color.a = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].shadowAngle = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].shadowOffset = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].shadowBlur = v; },
        [](DMGProject& p, double v) { p.textOverlays[0].shadowOpacity = v; },
    };
    using Limits = std::numeric_limits<double>;
    const double values[] = {
        Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 1e308, -1e308, 1e7, -1e5, 99999, 0, 1e-300};
    DMGProject base = pictureProject(BackgroundImageFit::fit);
    base.overlayImages.push_back({.sourcePath = base.backgroundImagePath, .x = 5, .y = 5, .width = 20, .height = 20});
    base.textOverlays.push_back({.text = "Drag and drop\nhere", .shadowEnabled = true, .width = 50, .height = 30});
    for (const BackgroundKind kind : {BackgroundKind::gradient, BackgroundKind::image}) {
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            for (const double value : values) {
                SCOPED_TRACE(std::to_string(i) + " set to " + std::to_string(value));
                DMGProject project = base;
                project.backgroundKind = kind;
                numbers[i](project, value);
                EXPECT_TRUE(BackgroundRenderer::pngData(project, 60, 60, m_context));
            }
        }
    }
}

TEST_F(Background, drawsAlikeOnSeveralThreads)
{
    const DMGProject project = DMGProject::starter([&](std::string_view id) { return m_arrows.filePath(id); });
    std::vector<QByteArray> results(4);
    std::vector<std::thread> threads;
    for (QByteArray& result : results) {
        threads.emplace_back([&] {
            const RenderContext context{m_arrows, m_cache};
            result = BackgroundRenderer::pngData(project, 300, 166, context).value_or("");
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(results[0].isEmpty());
    for (const QByteArray& result : results)
        EXPECT_EQ(result, results[0]);
}

} // namespace
} // namespace velmora
