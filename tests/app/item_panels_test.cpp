// The tabs for items and for what is selected: the list, the facts of files, figures that follow the hand.

#include "app/window_world.h"

#include "app/inspector/folder_count.h"
#include "app/inspector/item_list.h"
#include "app/kit/note.h"
#include "app/kit/number_field.h"
#include "canvas/canvas_view.h"
#include "platform/file_tree.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

struct ItemPanels : ::testing::Test, WindowWorld {
    void SetUp() override
    {
        show();
        state.edit({}, [](DMGProject& p) {
            p.items = {{.displayName = "a", .symlinkTarget = "/a"},
                       {.displayName = "b", .symlinkTarget = "/b"},
                       {.displayName = "c", .symlinkTarget = "/c"}};
        });
        state.setInspectorTab(InspectorTab::fileInfo);
    }
    ItemList& list() { return the<ItemList>("fileInfo.items"); }
    const DMGItem& item(std::size_t index) { return state.project().items[index]; }
    std::string order()
    {
        std::string names;
        for (int row = 0; row < list().items().rowCount(); ++row)
            names += list().items().item(row).displayName;
        return names;
    }
    QString shown(const char* label) { return the<QLabel>(label).text(); }
    double number(const char* field) { return the<NumberField>(field).value(); }
};

TEST_F(ItemPanels, listFollowsSelectionBothWays)
{
    state.selectItem(item(1).id);
    EXPECT_EQ(list().currentIndex().row(), 1);
    list().setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(state.selection(), item(2).id);
    state.selectItem({});
    EXPECT_FALSE(list().currentIndex().isValid());
    EXPECT_FALSE(the("fileInfo.name").isVisible());
    press(Qt::Key_Down);
    EXPECT_EQ(state.selection(), item(0).id);
}

TEST_F(ItemPanels, listIsWorkedByKeys)
{
    list().setFocus();
    state.selectItem(item(0).id);
    press(Qt::Key_Space);
    EXPECT_TRUE(item(0).hidden);
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(order(), "bac");
    press(Qt::Key_Down, Qt::AltModifier);
    press(Qt::Key_Down, Qt::AltModifier); // there is no further down
    EXPECT_EQ(order(), "bca");
    EXPECT_EQ(list().currentIndex().row(), 2) << "the moved row stays selected";
    press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(order(), "bac");
    EXPECT_EQ(state.undoName(), "Reorder Items");
    press(Qt::Key_Delete);
    EXPECT_EQ(order(), "bc");
    EXPECT_EQ(state.selection(), item(1).id) << "the next one takes its place";
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_TRUE(state.project().items.empty());
    EXPECT_TRUE(the("fileInfo.addFirst").isVisible());
    EXPECT_FALSE(list().isVisible());
    state.undo();
    EXPECT_EQ(order(), "b");
}

TEST_F(ItemPanels, eyeLeavesOutWithoutSelecting)
{
    state.selectItem(item(0).id);
    const QRect eye = list().eyeOf(list().model()->index(2, 0));
    EXPECT_EQ(eye.size(), QSize(44, 28));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, eye.topLeft() + QPoint(1, 1));
    EXPECT_TRUE(item(2).hidden);
    EXPECT_EQ(state.selection(), item(0).id);
    // A press that leaves the eye is none.
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, eye.center());
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, eye.center() - QPoint(0, 28));
    EXPECT_TRUE(item(2).hidden);
    EXPECT_FALSE(item(1).hidden);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, eye.center() - QPoint(80, 0));
    EXPECT_EQ(state.selection(), item(2).id);
}

TEST_F(ItemPanels, rowsAreDraggedWithinTheList)
{
    QAbstractItemModel& model = *list().model();
    const std::unique_ptr<QMimeData> first(model.mimeData({model.index(0, 0)}));
    EXPECT_TRUE(model.dropMimeData(first.get(), Qt::MoveAction, 2, 0, {}));
    EXPECT_EQ(order(), "bac");
    EXPECT_TRUE(model.dropMimeData(first.get(), Qt::MoveAction, -1, -1, {})) << "below the last";
    EXPECT_EQ(order(), "bca");
    QMimeData foreign;
    foreign.setData(model.mimeTypes().front(), "no item");
    EXPECT_FALSE(model.dropMimeData(&foreign, Qt::MoveAction, 0, 0, {}));
}

TEST_F(ItemPanels, tooltipTakesANameForTextAlone)
{
    // Markup in a document's name would have the tooltip read files.
    state.edit({}, [](DMGProject& p) { p.items[0].displayName = "<img src='/etc/hostname'>"; });
    const QString toolTip = list().model()->index(0, 0).data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(toolTip.contains("&lt;img")) << toolTip.toStdString();
    EXPECT_FALSE(toolTip.contains("<img")) << toolTip.toStdString();
}

TEST_F(ItemPanels, listOpensAThousandItemsAtOnce)
{
    state.setInspectorTab(InspectorTab::layout);
    state.edit({}, [](DMGProject& p) {
        p.items.clear();
        for (int i = 0; i < 1000; ++i)
            p.items.push_back({.displayName = std::to_string(i), .symlinkTarget = "/x"});
    });
    QElapsedTimer timer;
    timer.start();
    state.setInspectorTab(InspectorTab::fileInfo);
    state.selectItem(item(990).id);
    list().grab();
    EXPECT_LT(timer.elapsed(), 500);
    EXPECT_EQ(list().height(), 6 * 28);
    EXPECT_TRUE(list().viewport()->rect().intersects(list().visualRect(list().currentIndex())));
    QSignalSpy changed(list().model(), &QAbstractItemModel::dataChanged);
    state.edit({}, [](DMGProject& p) { p.items[990].x += 1; });
    EXPECT_EQ(changed.count(), 0) << "the list does not show places";
}

TEST_F(ItemPanels, tellWhatAnItemIs)
{
    const fs::path app = folder / "Larkspur.app";
    fs::create_directories(app / "Contents");
    writeFile(app / "Contents/one", std::string(1'000'000, 'x'));
    writeFile(app / "two", std::string(500'000, 'x'));
    writeFile(folder / "read.txt", "hello");
    state.edit({}, [&](DMGProject& p) {
        p.items = {{.sourcePath = app.string(), .displayName = "Larkspur.app"},
                   {.sourcePath = (folder / "read.txt").string(), .displayName = "Read Me"},
                   {.sourcePath = "/no/such.rtf", .displayName = "Gone"},
                   {.displayName = "Applications", .symlinkTarget = "/Applications"}};
    });
    const struct {
        const char* kind;
        const char* size;
        bool missing;
        bool link;
    } cases[] = {
        {"Application", "1.5 MB (2 files)", false, false},
        {"TXT document", "5 bytes", false, false},
        {"Unknown", "—", true, false},
        {"Link", "—", false, true},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(cases[i].kind);
        state.selectItem(item(i).id);
        EXPECT_TRUE(QTest::qWaitFor([&] { return shown("fileInfo.size") == cases[i].size; }));
        EXPECT_EQ(shown("fileInfo.kind"), cases[i].kind);
        EXPECT_EQ(the("fileInfo.missing").isVisible(), cases[i].missing);
        EXPECT_EQ(the("fileInfo.reveal").isVisible(), !cases[i].missing && !cases[i].link);
        EXPECT_EQ(the("fileInfo.target").isVisible(), cases[i].link);
    }
    state.selectItem(item(0).id);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown("fileInfo.size") == "1.5 MB (2 files)"; }));
    writeFile(app / "three", std::string(500'000, 'x'));
    QEvent back(QEvent::WindowActivate);
    QCoreApplication::sendEvent(the<QScrollArea>("inspector.page.fileInfo").widget(), &back);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown("fileInfo.size") == "2.0 MB (3 files)"; }));
    state.selectItem(item(3).id);

    auto& target = the<QLineEdit>("fileInfo.target");
    target.setFocus();
    target.selectAll();
    press(Qt::Key_Delete);
    EXPECT_TRUE(item(3).isSymlink()) << "an empty target would make a file of it";
    QTest::keyClicks(&target, "/Library");
    EXPECT_EQ(item(3).symlinkTarget, "/Library");

    state.selectItem(item(2).id);
    panels.toOpen = {{folder / "read.txt"}};
    click("fileInfo.locate");
    EXPECT_FALSE(the("fileInfo.missing").isVisible());
    EXPECT_EQ(item(2).displayName, "Gone");
}

TEST_F(ItemPanels, tellOfAMissingFileOnce)
{
    const QSignalSpy told(&the<Note>("fileInfo.missing"), &Note::announced);
    state.edit({}, [](DMGProject& p) {
        p.items[0] = {.sourcePath = "/no/one", .displayName = "one"};
        p.items[1] = {.sourcePath = "/no/two", .displayName = "two"};
    });
    state.selectItem(item(0).id);
    EXPECT_EQ(told.count(), 1);
    state.edit({}, [](DMGProject& p) { p.items[0].x += 1; });
    EXPECT_EQ(told.count(), 1) << "it has been moved, no more";
    state.selectItem(item(1).id);
    EXPECT_EQ(told.count(), 2);
    state.edit({}, [](DMGProject& p) { p.items[1].hidden = true; });
    EXPECT_EQ(told.count(), 3) << "which means something else";
}

TEST_F(ItemPanels, figuresFollowADragOnTheCanvas)
{
    const Uuid overlay = state.project().overlayImages.front().id;
    state.selectOverlay(overlay);
    auto& canvas = *window->findChild<CanvasView*>();
    const double x = number("arrange.overlayX");
    emit canvas.boxDragged(overlay, {1.5, 2, 30, 40});
    EXPECT_EQ(number("arrange.overlayX"), 1.5);
    EXPECT_EQ(number("arrange.overlayHeight"), 40);
    EXPECT_EQ(state.selectedOverlay()->x, x) << "the project learns of it at the end";
    emit canvas.boxDragged(Uuid::random(), {9, 9, 9, 9});
    EXPECT_EQ(number("arrange.overlayX"), 1.5);

    // By hand: press in the middle, move, and the field has moved before the button is released.
    canvas.setZoom(1);
    const QPoint middle = canvas.areaOf({CanvasElement::Kind::overlay, overlay}).center().toPoint();
    state.selectOverlay(overlay);
    QTest::mousePress(&canvas, Qt::LeftButton, {}, middle);
    QTest::mouseMove(&canvas, middle + QPoint(40, 60));
    EXPECT_NE(number("arrange.overlayX"), 1.5);
    EXPECT_EQ(state.selectedOverlay()->x, x);
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, middle + QPoint(40, 60));
    EXPECT_EQ(number("arrange.overlayX"), state.selectedOverlay()->x);
    EXPECT_NE(state.selectedOverlay()->x, x);
}

TEST_F(ItemPanels, arrangeShowsTheSelectedKind)
{
    state.setInspectorTab(InspectorTab::arrange);
    const auto visible = [this] {
        std::string names;
        for (const char* name : {"arrange.itemX", "arrange.overlayX", "arrange.textX"}) {
            if (const auto* field = window->findChild<QWidget*>(QLatin1String(name)); field && field->isVisible())
                names += name;
        }
        return names;
    };
    EXPECT_EQ(visible(), "");
    state.selectItem(item(0).id);
    EXPECT_EQ(visible(), "arrange.itemX");
    click("arrange.itemCenterH");
    EXPECT_EQ(item(0).x, state.project().contentSize().width / 2);
    click("arrange.leaveOut");
    EXPECT_TRUE(item(0).hidden);

    state.selectOverlay(state.project().overlayImages.front().id);
    EXPECT_EQ(visible(), "arrange.overlayX");
    EXPECT_FALSE(the("arrange.originalSize").isEnabled());
    EXPECT_FALSE(the("arrange.overlayMissing").isVisible());
    state.edit({}, [](DMGProject& p) {
        p.overlayImages[0].width += 10;
        p.overlayImages[0].sourcePath = "/no/such.png";
        p.overlayImages[0].builtInArrowID.reset();
    });
    EXPECT_TRUE(the("arrange.overlayMissing").isVisible());
    EXPECT_TRUE(the("arrange.originalSize").isEnabled());
    panels.toOpen = {{picture("new.png", 40, 20)}};
    click("arrange.replaceImage");
    EXPECT_FALSE(the("arrange.overlayMissing").isVisible());

    state.selectTextOverlay(state.project().textOverlays.front().id);
    EXPECT_EQ(visible(), "arrange.textX");
    EXPECT_FALSE(the("arrange.shadowBlur").isVisible());
    click("arrange.shadow");
    EXPECT_TRUE(state.selectedTextOverlay()->shadowEnabled);
    EXPECT_TRUE(the("arrange.shadowBlur").isVisible());
    auto& caption = the<QPlainTextEdit>("arrange.textContent");
    const int three = caption.height();
    caption.setPlainText("1\n2\n3\n4\n5");
    const int five = caption.height();
    caption.setPlainText(QString(40, QLatin1Char('\n')));
    EXPECT_EQ((caption.height() - three) * 2, (five - three) * 3) << "it grows to six lines";
    state.undo();
    state.undo();
    EXPECT_EQ(state.selectedTextOverlay()->text.find('\n'), std::string::npos);
}

TEST(FolderCount, givesUpForAnotherFolder)
{
    const EditorWorld world;
    fs::create_directories(world.folder / "one");
    fs::create_directories(world.folder / "two/deep");
    writeFile(world.folder / "two/deep/file", "1234");
    fs::create_symlink("/", world.folder / "two/root"); // is not followed
    FolderCount count;
    QSignalSpy counted(&count, &FolderCount::counted);
    count.count("/usr");
    count.count((world.folder / "one").string());
    count.count((world.folder / "two").string());
    EXPECT_FALSE(count.content());
    ASSERT_TRUE(counted.wait());
    EXPECT_EQ(count.content(), (FolderContent{4, 2}));
    EXPECT_FALSE(counted.wait(50)) << "of the others nothing is told";
}

} // namespace
} // namespace velmora::testing
