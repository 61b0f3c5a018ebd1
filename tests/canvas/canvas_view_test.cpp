#include "canvas_world.h"

#include "canvas/file_drop.h"
#include "canvas/zoom_control.h"

#include <QAccessible>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QMenu>
#include <QMimeData>
#include <QUrl>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

QMimeData* filesOf(const std::vector<std::filesystem::path>& files)
{
    auto* data = new QMimeData;
    QList<QUrl> urls;
    for (const auto& file : files)
        urls.append(QUrl::fromLocalFile(QString::fromStdString(file.string())));
    data->setUrls(urls);
    return data;
}

/// Drops files at a content point the way a window hands them to the widget there; returns whether they were taken.
bool drop(CanvasWorld& w, const std::vector<std::filesystem::path>& files, Point at)
{
    const std::unique_ptr<QMimeData> data(filesOf(files));
    const QPointF point = w.widgetPoint(at);
    QWidget* target = w.canvas.childAt(point.toPoint());
    while (target && target != &w.canvas && !target->acceptDrops())
        target = target->parentWidget();
    if (!target || !target->acceptDrops())
        return false;
    const QPointF there = target->mapFrom(&w.canvas, point);
    QDragEnterEvent enter(there.toPoint(), Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent dropped(there, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &dropped);
    EXPECT_EQ(dropped.dropAction(), Qt::CopyAction);
    CanvasWorld::settle();
    return dropped.isAccepted();
}

TEST(CanvasDrop, takesTheFirstFileWhereItFalls)
{
    for (const double zoom : {0.5, 1.0, 2.0}) {
        SCOPED_TRACE(zoom);
        CanvasWorld w;
        w.open(CanvasWorld::emptyWindow());
        w.canvas.setZoom(zoom);
        const auto picture = w.world.picture("arrow.png", 100, 50);
        const auto document = w.world.folder / "Other.velmora";

        EXPECT_TRUE(drop(w, {picture, document, picture}, {300, 200}));
        ASSERT_EQ(w.state.project().items.size(), 1U) << "in contents mode a picture is a file like any other";
        EXPECT_EQ(w.state.project().items[0].sourcePath, picture.string());

        w.state.setEditorMode(EditorMode::background);
        EXPECT_TRUE(drop(w, {picture}, {280, 150}));
        ASSERT_EQ(w.state.project().overlayImages.size(), 1U);
        EXPECT_NEAR(w.state.project().overlayImages[0].center().x, 280, 1);
        EXPECT_NEAR(w.state.project().overlayImages[0].center().y, 150, 1);

        EXPECT_TRUE(drop(w, {document}, {280, 150}));
        EXPECT_EQ(w.state.project().items.size(), 2U);
        EXPECT_EQ(w.state.editorMode(), EditorMode::contents);
    }
}

TEST(CanvasDrop, leavesWhatFallsBesideTheWindowToOthers)
{
    CanvasWorld w;
    w.open(CanvasWorld::emptyWindow());
    w.canvas.setZoom(0.5);
    EXPECT_FALSE(drop(w, {w.world.folder / "Other.velmora"}, {-60, 100}));
    EXPECT_FALSE(drop(w, {}, {300, 200})) << "no file at all";
    EXPECT_TRUE(w.state.project().items.empty());
}

TEST(CanvasKeys, moveRemoveAndClear)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.backgroundKind = BackgroundKind::image;
    project.backgroundImagePath = w.world.picture("back.png", 60, 40).string();
    project.items = {CanvasWorld::item("A", 150, 200)};
    w.open(project);
    w.state.selectItem(project.items[0].id);
    const struct {
        int key;
        Qt::KeyboardModifiers modifiers;
        Point place;
    } moves[] = {
        {Qt::Key_Left, Qt::NoModifier, {149, 200}},
        {Qt::Key_Down, Qt::NoModifier, {149, 201}},
        {Qt::Key_Right, Qt::ShiftModifier, {159, 201}},
        {Qt::Key_Up, Qt::ShiftModifier, {159, 191}},
    };
    for (const auto& each : moves) {
        w.key(each.key, each.modifiers);
        EXPECT_EQ(w.state.project().items[0].position(), each.place);
    }
    int asked = 0;
    QObject::connect(&w.canvas, &CanvasView::editSelectionRequested, [&] { ++asked; });
    w.key(Qt::Key_Return);
    EXPECT_EQ(asked, 1);
    w.key(Qt::Key_Escape);
    EXPECT_FALSE(w.state.selection());
    w.key(Qt::Key_Backspace);
    EXPECT_TRUE(w.state.hasBackgroundImage()) << "with nothing selected nothing goes";
    w.key(Qt::Key_Left);
    EXPECT_EQ(w.state.project().backgroundImageOffsetX, 0) << "the picture stays put in contents mode";
    w.state.editBackground();
    w.key(Qt::Key_Left);
    w.key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(w.state.project().backgroundImageOffsetX, -1);
    EXPECT_EQ(w.state.project().backgroundImageOffsetY, -10);
    w.key(Qt::Key_Delete);
    EXPECT_TRUE(w.state.hasBackgroundImage());
    w.state.editContents();
    w.state.selectItem(project.items[0].id);
    w.key(Qt::Key_Delete);
    EXPECT_TRUE(w.state.project().items.empty());
}

TEST(CanvasKeys, TabWalksThroughTheElementsAndOut)
{
    CanvasWorld w;
    QWidget window;
    QVBoxLayout layout(&window);
    QWidget after;
    after.setFocusPolicy(Qt::StrongFocus);
    layout.addWidget(&w.canvas);
    layout.addWidget(&after);
    window.resize(700, 700);
    window.show();
    window.activateWindow();
    CanvasWorld::settle();
    DMGProject project = CanvasWorld::emptyWindow();
    project.items = {CanvasWorld::item("A", 150, 200), CanvasWorld::item("B", 250, 200),
                     CanvasWorld::item("C", 350, 200)};
    project.items[1].hidden = true;
    w.open(project);
    w.canvas.setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(w.canvas.hasFocus());
    w.key(Qt::Key_Tab);
    EXPECT_EQ(w.state.selection(), project.items[0].id);
    w.key(Qt::Key_Tab);
    EXPECT_EQ(w.state.selection(), project.items[2].id) << "past the one that is left out";
    EXPECT_TRUE(w.canvas.hasFocus());
    w.key(Qt::Key_Tab);
    EXPECT_FALSE(w.canvas.hasFocus());
    EXPECT_EQ(w.state.selection(), project.items[2].id);
    w.canvas.setFocus(Qt::BacktabFocusReason);
    w.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(w.state.selection(), project.items[0].id);
    w.canvas.setParent(nullptr);
    layout.removeWidget(&after);
    after.setParent(nullptr);
}

TEST(CanvasZoom, presetsFitAndThePlaceUnderThePointer)
{
    CanvasWorld w;
    w.open(CanvasWorld::emptyWindow());
    auto* control = w.canvas.findChild<ZoomControl*>(QStringLiteral("canvas.zoom"));
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->text(), "Fit");
    w.canvas.zoomIn(); // from 668/600
    EXPECT_EQ(control->text(), "125%");
    w.canvas.zoomOut();
    w.key(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(control->text(), "75%");
    w.key(Qt::Key_9, Qt::ControlModifier);
    EXPECT_FALSE(w.canvas.zoom());

    w.canvas.setZoom(2.0);
    const QPointF pointer(500, 300);
    const Point held = w.canvas.placement().toContent(pointer);
    QWheelEvent wheel(pointer, w.canvas.mapToGlobal(pointer), {}, {0, 240}, Qt::NoButton, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&w.canvas, &wheel);
    EXPECT_GT(*w.canvas.zoom(), 2.5);
    EXPECT_NEAR(w.canvas.placement().toContent(pointer).x, held.x, 0.5);
    EXPECT_NEAR(w.canvas.placement().toContent(pointer).y, held.y, 0.5);
}

TEST(CanvasZoom, theMenuOffersFitAndThePresets)
{
    CanvasWorld w;
    w.state.edit({}, [](DMGProject& project) { project = DMGProject(); });
    CanvasView canvas(w.state, w.themes, w.world.arrows, w.world.pictures);
    canvas.resize(740, 760);
    canvas.show();
    EXPECT_EQ(canvas.placement().content.width(), 740 - 72) << "a canvas shows the project it finds";
    auto* control = canvas.findChild<ZoomControl*>(QStringLiteral("canvas.zoom"));
    ASSERT_NE(control, nullptr);
    control->click();
    auto* menu = control->findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    QStringList names;
    for (const QAction* action : menu->actions())
        names.append((action->isChecked() ? "*" : "") + action->text());
    EXPECT_EQ(names.join(' '), "*Fit to Window  50% 75% 100% 125% 150% 200%");
    menu->actions()[3]->trigger();
    EXPECT_EQ(canvas.zoom(), 0.75);
    menu->close();
}

TEST(CanvasZoom, absurdWindowsAreDrawnAsFarAsTheyAreSeen)
{
    CanvasWorld w;
    for (const double extent : {1e9, 1e4, 1.0, 0.0, -500.0}) {
        for (const double zoom : {0.0, 8.0}) {
            SCOPED_TRACE(extent);
            DMGProject project = CanvasWorld::emptyWindow();
            project.windowWidth = project.windowHeight = extent;
            project.items = {CanvasWorld::item("A", -1e12, 1e12), CanvasWorld::item("B", 10, 10)};
            project.iconSize = 1e7;
            project.overlayImages = {w.overlay({-1e9, 5, 2e9, 1e9})};
            project.textOverlays = {CanvasWorld::caption({5, 5, 1e8, 1e8})};
            w.open(project);
            w.canvas.setZoom(zoom > 0 ? std::optional(zoom) : std::nullopt);
            for (const auto mode : {EditorMode::contents, EditorMode::background}) {
                w.state.setEditorMode(mode);
                EXPECT_EQ(w.canvas.grab().toImage().size(), w.canvas.size());
                w.hover({10, 10});
            }
        }
    }
}

TEST(CanvasWarnings, standWhereADesignerLooks)
{
    using Kind = CanvasWarning::Kind;
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    const auto here = w.world.picture("here.png", 10, 10).string();
    project.items = {{.sourcePath = here, .displayName = "Same.png", .x = 100, .y = 100},
                     {.sourcePath = "/nowhere/gone.txt", .displayName = "gone.txt", .x = 200, .y = 100},
                     CanvasWorld::item("SAME.png", 300, 100),
                     CanvasWorld::item("Far", 700, 250),
                     CanvasWorld::item("same.png", 400, 100)};
    project.items[4].hidden = true;
    w.open(project);
    std::vector<std::pair<Kind, Uuid>> found;
    for (const CanvasWarning& warning : w.canvas.warnings())
        found.emplace_back(warning.kind, warning.item);
    EXPECT_EQ(found, (std::vector<std::pair<Kind, Uuid>>{{Kind::sameName, project.items[0].id},
                                                         {Kind::missingSource, project.items[1].id},
                                                         {Kind::sameName, project.items[2].id},
                                                         {Kind::outsideWindow, project.items[3].id}}));
    EXPECT_TRUE(w.canvas.warnings()[0].text.contains(QString::fromStdString(here)));
    EXPECT_TRUE(w.canvas.warnings()[1].text.contains("/nowhere/gone.txt"));
    w.click({588, 250});
    EXPECT_EQ(w.state.selection(), project.items[3].id) << "by its badge at the nearest edge";
}

TEST(CanvasPicturesOnDisk, aChangedFileIsReadAnew)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.backgroundKind = BackgroundKind::image;
    project.backgroundImagePath = w.world.picture("back.png", 60, 40).string();
    w.open(project);
    const QPoint middle = w.widgetPoint({300, 200}).toPoint();
    EXPECT_EQ(w.screen().pixelColor(middle), QColor(Qt::red));
    QImage blue(70, 50, QImage::Format_RGB32);
    blue.fill(Qt::blue);
    ASSERT_TRUE(blue.save(QString::fromStdString(project.backgroundImagePath)));
    QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
    QCoreApplication::sendEvent(&w.canvas, &enter);
    EXPECT_EQ(w.screen().pixelColor(middle), QColor(Qt::blue));
    std::filesystem::remove(project.backgroundImagePath);
    QCoreApplication::sendEvent(&w.canvas, &enter);
    EXPECT_NE(w.screen().pixelColor(middle), QColor(Qt::blue)) << "the background's colour";
}

TEST(CanvasPicturesOnDisk, aChangedOverlayIsReadAnew)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.overlayImages = {w.overlay({200, 100, 200, 100})};
    w.open(project);
    w.state.setEditorMode(EditorMode::background);
    const QPoint middle = w.widgetPoint({300, 150}).toPoint();
    EXPECT_EQ(w.screen().pixelColor(middle), QColor(Qt::red));
    QImage blue(30, 15, QImage::Format_RGB32);
    blue.fill(Qt::blue);
    ASSERT_TRUE(blue.save(QString::fromStdString(project.overlayImages[0].sourcePath)));
    QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
    QCoreApplication::sendEvent(&w.canvas, &enter);
    EXPECT_EQ(w.screen().pixelColor(middle), QColor(Qt::blue));
}

TEST(CanvasPicturesOnDisk, aDamagedOverlayIsTriedAgainOnceItsFileHasChanged)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.overlayImages = {w.overlay({200, 100, 200, 100})};
    const QString file = QString::fromStdString(project.overlayImages[0].sourcePath);
    const QImage whole(file);
    const auto write = [&](const QByteArray& bytes) {
        QFile damaged(file);
        ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
        damaged.write(bytes);
    };
    write("nothing");
    w.open(project);
    w.state.setEditorMode(EditorMode::background);
    const QPoint middle = w.widgetPoint({300, 150}).toPoint();
    EXPECT_NE(w.screen().pixelColor(middle), QColor(Qt::red));
    ASSERT_TRUE(whole.save(file));
    w.canvas.update();
    EXPECT_NE(w.screen().pixelColor(middle), QColor(Qt::red)) << "read at every repaint";
    QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
    QCoreApplication::sendEvent(&w.canvas, &enter);
    EXPECT_EQ(w.screen().pixelColor(middle), QColor(Qt::red));
}

TEST(CanvasKeys, escapeBringsAPanBackAndNothingElse)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.overlayImages = {w.overlay({200, 100, 200, 100})};
    w.open(project);
    w.state.selectOverlay(project.overlayImages[0].id);
    w.state.setEditorMode(EditorMode::background);
    w.canvas.setZoom(4.0);
    const QPointF before = w.canvas.placement().content.topLeft();
    const QPointF start(300, 300);
    const auto send = [&](QEvent::Type type, QPointF at, Qt::MouseButton button) {
        QMouseEvent event(type, at, w.canvas.mapToGlobal(at), button, Qt::MiddleButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&w.canvas, &event);
    };
    send(QEvent::MouseButtonPress, start, Qt::MiddleButton);
    send(QEvent::MouseMove, start + QPointF(40, 25), Qt::NoButton);
    EXPECT_NE(w.canvas.placement().content.topLeft(), before);
    w.key(Qt::Key_Escape);
    EXPECT_EQ(w.canvas.placement().content.topLeft(), before);
    EXPECT_EQ(w.state.overlaySelection(), project.overlayImages[0].id);
    EXPECT_EQ(w.state.editorMode(), EditorMode::background);
}

TEST(CanvasKeys, moveAnItemThatWasChosenInAListWhileTheBackgroundIsEdited)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.items = {CanvasWorld::item("Applications", 450, 166)};
    project.backgroundKind = BackgroundKind::image;
    project.backgroundImagePath = w.world.picture("ground.png", 60, 40).string();
    w.open(project);
    w.state.editBackground();
    w.state.selectItem(project.items[0].id);
    w.key(Qt::Key_Right);
    EXPECT_EQ(w.state.project().items[0].x, 451);
    EXPECT_EQ(w.state.project().backgroundImageOffsetX, 0);
}

TEST(CanvasDrop, takesAFileOnTheHintThatAsksForOneButNoDocument)
{
    CanvasWorld w;
    w.open(CanvasWorld::emptyWindow());
    const QRectF window = w.canvas.placement().window();
    const QPointF below(window.center().x(), window.bottom() + 40);
    const auto isTaken = [&](const char* file) {
        QWidget* surface = w.canvas.childAt(below.toPoint());
        if (!surface)
            return false;
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QLatin1String(file))});
        QDragEnterEvent event(surface->mapFrom(&w.canvas, below.toPoint()), Qt::CopyAction, &data, Qt::LeftButton, {});
        event.ignore();
        QCoreApplication::sendEvent(surface, &event);
        return event.isAccepted();
    };
    EXPECT_TRUE(isTaken("/nowhere/Larkspur.app"));
    EXPECT_FALSE(isTaken("/nowhere/Larkspur.velmora")) << "which the window opens";
    DMGProject filled = CanvasWorld::emptyWindow();
    filled.items = {{.sourcePath = "/nowhere/Larkspur.app", .displayName = "Larkspur.app", .x = 169, .y = 166}};
    w.open(filled);
    EXPECT_FALSE(isTaken("/nowhere/Larkspur.app"));
}

TEST(CanvasAccessibility, isAListOfWhatCanBeSelected)
{
    CanvasWorld w;
    DMGProject project = CanvasWorld::emptyWindow();
    project.items = {{.sourcePath = "/nowhere/Larkspur.app", .displayName = "Larkspur.app", .x = 169, .y = 166},
                     CanvasWorld::item("Applications", 450, 166)};
    project.items.push_back(CanvasWorld::item("Hidden", 10, 10));
    project.items.back().hidden = true;
    project.overlayImages = {w.overlay({245.67, 145.507, 152.919, 40.9853})};
    project.overlayImages[0].builtInArrowID = "arrow_pro_swoosh";
    project.textOverlays = {CanvasWorld::caption({20, 300, 100, 30})};
    w.open(project);
    w.state.selectItem(project.items[0].id);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&w.canvas);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->child(0)->text(QAccessible::Name), "Larkspur.app, application, at 169, 166, selected");
    EXPECT_TRUE(list->child(0)->state().selected);
    EXPECT_EQ(list->child(1)->text(QAccessible::Name), "Applications, link to /Applications, at 450, 166");
    EXPECT_EQ(list->indexOfChild(list->child(1)), 1);
    EXPECT_NE(list->child(2)->role(), QAccessible::ListItem) << "what is left out is no object";
    const QPoint inside = list->child(1)->rect().center();
    EXPECT_EQ(list->childAt(inside.x(), inside.y()), list->child(1));

    w.drag({169, 150}, {169, 170});
    EXPECT_TRUE(list->child(0)->text(QAccessible::Name).endsWith("selected, aligned with Applications"));
    w.state.selectItem(project.items[1].id);
    EXPECT_TRUE(list->child(1)->text(QAccessible::Name).endsWith("selected")) << "nobody moved it";

    w.state.editBackground();
    EXPECT_EQ(list->child(0)->text(QAccessible::Name), "Pro Swoosh 3D, arrow, at 246, 146, 153 by 41");
    EXPECT_EQ(list->child(1)->text(QAccessible::Name), "Drag & Drop, caption, at 20, 300, 100 by 30");
}

} // namespace
} // namespace velmora::testing
