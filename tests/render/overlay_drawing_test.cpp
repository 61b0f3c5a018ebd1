#include "render_fixture.h"

namespace velmora
{
namespace
{

const QColor none(0, 0, 0, 0);

class Overlays : public RenderTest
{
protected:
    /// A picture of one colour at this box.
    DMGOverlayImage patch(const QColor& color, double x, double y, double width, double height)
    {
        const std::string name = text(color);
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(color);
        m_cache.store(pictureOf(image), name);
        return {.sourcePath = name, .x = x, .y = y, .width = width, .height = height};
    }
    /// A project of 200 × 100 points with one caption in a box at (20, 0), 160 × 100.
    static DMGProject captionProject(const DMGTextOverlay& overlay)
    {
        DMGProject project = emptyProject(200, 100);
        project.textOverlays.push_back(overlay);
        project.textOverlays[0].setBounds({20, 0, 160, 100});
        return project;
    }
};

TEST_F(Overlays, putsPicturesWhereTheProjectSays)
{
    DMGProject project = emptyProject(100, 50);
    project.overlayImages = {patch(red, 10, 5, 30, 20)};
    EXPECT_EQ(inkBox(draw(project)), QRect(10, 5, 30, 20));
    EXPECT_EQ(inkBox(draw(project, 2)), QRect(20, 10, 60, 40));
    // Drawn at another size, the content is scaled to it.
    EXPECT_EQ(inkBox(BackgroundRenderer::image(project, {50, 50}, true, 1, m_context)), QRect(5, 5, 15, 20));
    EXPECT_TRUE(inkBox(BackgroundRenderer::image(project, {50, 50}, false, 1, m_context)).isEmpty());

    QImage moved(100, 50, QImage::Format_ARGB32_Premultiplied);
    moved.fill(Qt::transparent);
    QPainter painter(&moved);
    BackgroundRenderer::draw(painter, project, {100, 50}, true, 7, m_context);
    painter.end();
    EXPECT_EQ(inkBox(moved), QRect(10, 12, 30, 20));
}

TEST_F(Overlays, givesTheBoxInTheSpaceWhoseYAxisPointsUp)
{
    const DMGOverlayImage overlay{.x = 10, .y = 5, .width = 30, .height = 20};
    EXPECT_EQ(BackgroundRenderer::overlayContentRect(overlay, {100, 50}, 3, 2, 4, QRectF(0, 0, 200, 200)),
              QRectF(20, 200 - (5 + 3) * 4 - 80, 60, 80));
}

TEST_F(Overlays, paintsInListOrderWithCaptionsOnTop)
{
    DMGProject project = emptyProject(100, 50);
    project.overlayImages = {patch(red, 0, 0, 60, 50), patch(blue, 40, 0, 60, 50)};
    project.textOverlays.push_back({.text = "HHHH", .fontSize = 20, .color = {0, 1, 0, 1}});
    project.textOverlays[0].setBounds({0, 0, 100, 25});
    const QImage image = draw(project);
    EXPECT_PIXEL(image, 20, 48, red);
    EXPECT_PIXEL(image, 50, 48, blue);
    EXPECT_FALSE(inkBox(image, [](QColor c) { return alike(c, QColor(0, 255, 0)); }).isEmpty());
}

TEST_F(Overlays, keepsTransparencyOfPictures)
{
    QImage half(4, 4, QImage::Format_ARGB32);
    half.fill(QColor(0, 0, 255, 128));
    m_cache.store(pictureOf(half), "half");
    DMGProject project = emptyProject(40, 40);
    project.backgroundColor = {1, 0, 0, 1};
    project.overlayImages = {{.sourcePath = "half", .width = 40, .height = 40}};
    EXPECT_PIXEL(draw(project), 20, 20, QColor(127, 0, 128));
}

TEST_F(Overlays, warnsOnceOfWhatIsMissing)
{
    DMGProject project = emptyProject(100, 50);
    project.overlayImages = {{.sourcePath = "/missing/logo.png", .width = 10, .height = 10}, patch(red, 0, 0, 10, 10)};
    project.textOverlays = {{.text = "A", .fontName = "NoSuchFont-Bold", .width = 50, .height = 50}};
    const QImage image = draw(project);
    EXPECT_PIXEL(image, 5, 5, red);
    draw(project, 2);
    ASSERT_EQ(m_warnings.size(), 2U);
    EXPECT_NE(m_warnings[0].find("/missing/logo.png"), std::string::npos);
    EXPECT_NE(m_warnings[1].find("NoSuchFont-Bold"), std::string::npos);
}

TEST_F(Overlays, placesCaptionsVertically)
{
    // One line of 40 points: Helvetica Neue's lines are 1.193 times the font size.
    const auto inkTop = [&](TextVerticalAlignment alignment, const std::string& string) {
        return inkBox(draw(captionProject({.text = string, .fontSize = 40 / 1.193, .verticalAlignment = alignment})))
            .top();
    };
    using enum TextVerticalAlignment;
    const int first = inkTop(top, "H");
    EXPECT_EQ(inkTop(middle, "H"), first + 30);
    EXPECT_EQ(inkTop(bottom, "H"), first + 60);
    EXPECT_EQ(inkTop(middle, "H\nH\nH"), first);
    EXPECT_EQ(inkTop(bottom, "H\nH\nH"), first); // and runs out of the box below
}

TEST_F(Overlays, castsTheShadowInItsDirection)
{
    const struct {
        const char* name;
        double angle;
        QPointF moved;
    } cases[] = {{"right", 0, {12, 0}},
                 {"up", 90, {0, -12}},
                 {"left", 180, {-12, 0}},
                 {"down", 270, {0, 12}},
                 {"down and right", 315, {8.49, 8.49}}};
    for (const auto& c : cases) {
        for (const int scale : {1, 2}) {
            SCOPED_TRACE(c.name);
            // The text is clear green ink on a dark red shadow; an "I" is narrow enough to tell them apart.
            const QImage image = draw(captionProject({.text = "I",
                                                      .fontSize = 8,
                                                      .color = {0, 1, 0, 1},
                                                      .shadowEnabled = true,
                                                      .shadowColor = {1, 0, 0, 1},
                                                      .shadowAngle = c.angle,
                                                      .shadowOffset = 12,
                                                      .shadowBlur = 0,
                                                      .shadowOpacity = 1}),
                                      scale);
            const QRect glyph = inkBox(image, [](QColor color) { return color.alpha() > 64 && color.green() > 128; });
            const QRect shadow = inkBox(image, [](QColor color) { return color.alpha() > 64 && color.red() > 128; });
            const QPointF off = shadow.topLeft() - glyph.topLeft() - c.moved * scale;
            EXPECT_NEAR(off.x(), 0, 1);
            EXPECT_NEAR(off.y(), 0, 1);
        }
    }
}

TEST_F(Overlays, clampsTheShadowsOpacity)
{
    const auto strongest = [&](double opacity, double textAlpha) {
        const QImage image = draw(captionProject({.text = "H",
                                                  .fontSize = 45,
                                                  .color = {0, 1, 0, textAlpha},
                                                  .shadowEnabled = true,
                                                  .shadowColor = {1, 0, 0, 0.1},
                                                  .shadowAngle = 270,
                                                  .shadowOffset = 25,
                                                  .shadowBlur = 0,
                                                  .shadowOpacity = opacity}));
        int alpha = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                if (color.red() > color.green())
                    alpha = std::max(alpha, color.alpha());
            }
        }
        return alpha;
    };
    EXPECT_EQ(strongest(1.5, 1), 255);
    EXPECT_NEAR(strongest(0.5, 1), 128, 2);
    EXPECT_EQ(strongest(-0.2, 1), 0);
    EXPECT_NEAR(strongest(1, 0.5), 128, 2);
}

} // namespace
} // namespace velmora
