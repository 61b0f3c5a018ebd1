#include "canvas_world.h"

#include "canvas/hint_capsule.h"

#include <QColor>

#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

TEST(CanvasIconDrag, movesTheIconAndAlignsItAtEveryZoom)
{
    for (const double zoom : {0.5, 1.0, 2.0}) {
        SCOPED_TRACE(zoom);
        CanvasWorld w;
        DMGProject project = CanvasWorld::emptyWindow();
        project.items = {CanvasWorld::item("A", 150, 200), CanvasWorld::item("B", 420, 210)};
        w.open(project);
        w.state.setInspectorTab(1);
        w.canvas.setZoom(zoom);

        w.press({150, 190});
        w.move({260, 150});
        EXPECT_EQ(w.state.project().items[0].position(), (Point{260, 150})) << "written at every event";
        w.move({170, 206});
        EXPECT_EQ(w.state.project().items[0].position(), (Point{170, 210})) << "on the other's row";
        EXPECT_EQ(differences(w.screen(), w.canvas.grab().toImage()), 0) << "every repaint was asked for";
        w.release({170, 206});
        EXPECT_EQ(w.state.project().items[0].position(), (Point{170, 210}));
        EXPECT_EQ(w.state.selection(), project.items[0].id);
        EXPECT_EQ(w.state.inspectorTab(), 1) << "a drag is no click";
        EXPECT_EQ(differences(w.screen(), w.freshPicture()), 0) << "nothing of the drag is left";

        w.state.undo();
        EXPECT_EQ(w.state.project().items[0].position(), (Point{150, 200})) << "one step";
    }
}

TEST(CanvasIconDrag, aClickSelectsAndShowsTheArrangeTab)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.items = {CanvasWorld::item("A", 150, 200), CanvasWorld::item("B", 170, 200)};
    w.open(project);
    w.click({160, 190});
    EXPECT_EQ(w.state.selection(), project.items[1].id) << "the one on top";
    EXPECT_EQ(w.state.inspectorTab(), InspectorTab::arrange);
    w.click({500, 50});
    EXPECT_FALSE(w.state.selection());
    w.state.edit({}, [](DMGProject& open) { open.items[1].hidden = true; });
    w.click({190, 190});
    EXPECT_FALSE(w.state.selection() == project.items[1].id) << "what is left out is not there";
}

TEST(CanvasIconDrag, EscapePutsEverythingBackAndALostPointerEndsIt)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.items = {CanvasWorld::item("A", 150, 200)};
    w.open(project);
    w.canvas.setZoom(1);
    w.state.write(w.world.folder / "saved.velmora");
    w.press({150, 190});
    w.move({300, 100});
    w.key(Qt::Key_Escape);
    EXPECT_EQ(w.state.project(), project);
    EXPECT_FALSE(w.state.isDirty());
    EXPECT_FALSE(w.state.selection());
    w.move({320, 100});
    EXPECT_EQ(w.state.project(), project) << "the drag is over";

    w.press({150, 190});
    w.move({300, 100});
    w.hover({400, 300}); // no button any more: the release went elsewhere
    EXPECT_EQ(w.state.project().items[0].position(), (Point{300, 100}));
    w.state.undo();
    EXPECT_EQ(w.state.project(), project);
}

TEST(CanvasBoxDrag, movesResizesAndCommitsOnceAtTheEnd)
{
    const Rect box{100, 50, 80, 40};
    const struct {
        const char* name;
        double zoom;
        Point from;
        Point to;
        Rect result;
    } cases[] = {
        {"moved", 0.5, {140, 70}, {190, 120}, {150, 100, 80, 40}},
        {"moved onto the window's centre", 2, {140, 70}, {303, 120}, {260, 100, 80, 40}},
        {"kept inside", 1, {140, 70}, {-300, 70}, {0, 50, 80, 40}},
        {"resized at a corner", 2, {180, 90}, {200, 100}, {100, 50, 100, 50}},
        {"no smaller than it may be", 0.5, {180, 70}, {20, 70}, {100, 50, 16, 40}},
        {"only clicked", 1, {140, 70}, {140, 70}, box},
    };
    for (const auto& c : cases) {
        for (const bool text : {false, true}) {
            SCOPED_TRACE(std::string(c.name) + (text ? ", caption" : ", overlay"));
            CanvasWorld w;
            DMGProject project = CanvasWorld::emptyWindow();
            if (text)
                project.textOverlays = {CanvasWorld::caption(box)};
            else
                project.overlayImages = {w.overlay(box)};
            w.open(project);
            w.canvas.setZoom(c.zoom);
            if (text)
                w.state.selectTextOverlay(project.textOverlays[0].id);
            else
                w.state.selectOverlay(project.overlayImages[0].id);
            w.state.write(w.world.folder / "saved.velmora");
            const auto bounds = [&] {
                const DMGProject& now = w.state.project();
                return text ? now.textOverlays[0].bounds() : now.overlayImages[0].bounds();
            };
            w.press(c.from);
            w.move(c.to);
            EXPECT_EQ(bounds(), box) << "the project learns of it at the end";
            EXPECT_EQ(differences(w.screen(), w.canvas.grab().toImage()), 0);
            w.release(c.to);
            EXPECT_EQ(bounds(), c.result);
            EXPECT_TRUE(w.state.isDirty());
            EXPECT_EQ(differences(w.screen(), w.freshPicture()), 0);
        }
    }
}

TEST(CanvasBoxDrag, EscapeAndLosingTheFocus)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.overlayImages = {w.overlay({100, 50, 80, 40})};
    project.textOverlays = {CanvasWorld::caption({300, 300, 100, 30})};
    w.open(project);
    w.state.selectTextOverlay(project.textOverlays[0].id);
    w.state.write(w.world.folder / "saved.velmora");
    w.press({140, 70});
    w.move({200, 200});
    w.key(Qt::Key_Escape);
    EXPECT_EQ(w.state.project(), project);
    EXPECT_FALSE(w.state.isDirty());
    EXPECT_EQ(w.state.textSelection(), project.textOverlays[0].id) << "what was selected before";

    w.press({140, 70});
    w.move({200, 200});
    QFocusEvent lost(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(&w.canvas, &lost);
    EXPECT_NE(w.state.project(), project) << "as if it had been released there";
    EXPECT_EQ(w.canvas.cursor().shape(), Qt::ArrowCursor);
}

TEST(CanvasBoxDrag, namesWhatTheBoxCameToRestOn)
{
    const double halfCell = OverlaySnap::halfCell(DMGProject().iconSize);
    const struct {
        double left; ///< of the box, as the hand puts it
        const char* spoken;
    } cases[] = {
        {150 - 40 + 2, "aligned with A"},
        {150 + halfCell + 2, "aligned with A"},
        {150 - halfCell - 80 - 2, "aligned with A"},
        {300 - 40 + 2, "aligned with the window’s center"},
        {480, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.left);
        CanvasWorld w;
        DMGProject project = CanvasWorld::emptyWindow();
        project.items = {CanvasWorld::item("A", 150, 300)};
        project.overlayImages = {w.overlay({400, 50, 80, 40})};
        w.open(project);
        w.canvas.setZoom(1);
        w.state.selectOverlay(project.overlayImages[0].id);
        w.drag({440, 70}, {c.left + 40, 70});
        EXPECT_EQ(w.canvas.alignment({CanvasElement::Kind::overlay, project.overlayImages[0].id}),
                  QString::fromUtf8(c.spoken));
    }
}

TEST(CanvasHits, onlyThePressingButtonFollowsTheLink)
{
    CanvasWorld w;
    w.open(CanvasWorld::emptyWindow());
    const QPointF link = EmptyHint(w.canvas.placement().window(), w.canvas.size()).link().center();
    const Point at = w.canvas.placement().toContent(link);
    w.press(at);
    w.release(at, Qt::RightButton);
    EXPECT_TRUE(w.world.panels.opened.empty());
    w.release(at);
    EXPECT_EQ(w.world.panels.opened.size(), 1U);
}

TEST(CanvasHits, aCaptionLiesAboveOverlaysAndTheirHandles)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.overlayImages = {w.overlay({100, 100, 80, 80}), w.overlay({150, 100, 80, 80})};
    project.textOverlays = {CanvasWorld::caption({165, 90, 100, 30})};
    w.open(project);
    const Uuid lower = project.overlayImages[0].id;
    const Uuid upper = project.overlayImages[1].id;
    const Uuid text = project.textOverlays[0].id;
    w.state.selectItem(Uuid::random());
    w.state.editBackground();

    w.click({165, 150});
    EXPECT_EQ(w.state.overlaySelection(), upper) << "of two the upper";
    w.state.selectOverlay(lower);
    w.click({178, 160});
    EXPECT_EQ(w.state.overlaySelection(), upper);
    w.state.selectOverlay(lower);
    w.click({178, 142});
    EXPECT_EQ(w.state.overlaySelection(), lower) << "its handle comes before the other's body";
    w.click({178, 102});
    EXPECT_EQ(w.state.textSelection(), text) << "a caption comes before that handle";
    EXPECT_FALSE(w.state.overlaySelection());

    w.state.setSelection(upper);
    w.click({500, 350});
    EXPECT_EQ(w.state.textSelection(), text) << "empty ground clears the overlay's selection alone";
    w.state.selectOverlay(upper);
    w.click({500, 350});
    EXPECT_FALSE(w.state.overlaySelection());
}

TEST(CanvasHits, theCursorTellsWhatAPressWouldDo)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.items = {CanvasWorld::item("A", 300, 300)};
    project.overlayImages = {w.overlay({100, 100, 100, 60})};
    w.open(project);
    const auto cursorAt = [&](Point point) {
        w.hover(point);
        return w.canvas.cursor().shape();
    };
    EXPECT_EQ(cursorAt({300, 290}), Qt::OpenHandCursor);
    EXPECT_EQ(cursorAt({150, 130}), Qt::ArrowCursor) << "burnt in";
    EXPECT_EQ(cursorAt({-20, -60}), Qt::ArrowCursor);
    w.state.selectOverlay(project.overlayImages[0].id);
    EXPECT_EQ(cursorAt({300, 290}), Qt::ArrowCursor) << "icons rest in background mode";
    EXPECT_EQ(cursorAt({150, 120}), Qt::OpenHandCursor);
    EXPECT_EQ(cursorAt({100, 100}), Qt::SizeFDiagCursor);
    EXPECT_EQ(cursorAt({200, 130}), Qt::SizeHorCursor);
    EXPECT_EQ(cursorAt({500, 30}), Qt::ArrowCursor);
    w.press({150, 120});
    EXPECT_EQ(w.canvas.cursor().shape(), Qt::ClosedHandCursor);
}

/// A picture of stripes and blocks, so that every shift shows.
QImage pattern()
{
    QImage image(1200, 800, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, QColor((x / 40 % 5) * 60, (y / 40 % 5) * 60, (x / 200 + y / 200) % 2 * 255));
    }
    return image;
}

TEST(CanvasBackgroundDrag, thePictureFollowsThePointerInBothDirections)
{
    for (const double zoom : {0.5, 1.0, 2.0}) {
        SCOPED_TRACE(zoom);
        CanvasWorld w;
        const auto file = w.world.folder / "pattern.png";
        ASSERT_TRUE(pattern().save(QString::fromStdString(file.string())));
        DMGProject project = CanvasWorld::emptyWindow();
        project.backgroundKind = BackgroundKind::image;
        project.backgroundImagePath = file.string();
        project.backgroundImageOffsetX = 3;
        w.open(project);
        w.canvas.setZoom(zoom);
        w.state.editBackground();
        const QImage before = w.screen();
        w.press({300, 150});
        w.move({340, 190});
        const QImage during = w.screen();
        EXPECT_EQ(differences(during, w.canvas.grab().toImage()), 0);
        EXPECT_EQ(w.state.project().backgroundImageOffsetX, 43);
        EXPECT_EQ(w.state.project().backgroundImageOffsetY, -40) << "stored upward";
        for (const Point point : {Point{250, 200}, Point{300, 260}, Point{310, 230}}) {
            const QPoint from = w.widgetPoint(point).toPoint();
            const QPoint to = w.widgetPoint({point.x + 40, point.y + 40}).toPoint();
            const QColor now = during.pixelColor(to);
            const QColor then = before.pixelColor(from);
            EXPECT_NEAR(now.red(), then.red(), 2);
            EXPECT_NEAR(now.green(), then.green(), 2);
            EXPECT_NEAR(now.blue(), then.blue(), 2);
        }
        w.release({340, 190});
        EXPECT_EQ(differences(w.screen(), w.freshPicture()), 0);
        w.state.undo();
        EXPECT_EQ(w.state.project(), project);
    }
}

} // namespace
} // namespace velmora::testing
