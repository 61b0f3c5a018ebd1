// The window as a person uses it: presses, menus, keys, sheets.

#include "app/window_world.h"

#include "app/clipped_label.h"
#include "app/kit/sheet_host.h"
#include "app/kit/tool_button.h"
#include "app/window_size.h"
#include "model/document.h"
#include "platform/file_tree.h"

#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QUrl>
#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

struct Session : ::testing::Test, WindowWorld {
    void SetUp() override { show(); }

    [[nodiscard]] bool sheetIsOpen() { return window->findChild<SheetHost*>()->isOpen(); }
    [[nodiscard]] QString title(const char* label) { return the<ClippedLabel>(label).text(); }
};

TEST_F(Session, composesAnImageAndTakesStepsBack)
{
    EXPECT_EQ(window->windowTitle(), "Untitled.velmora[*]");
    EXPECT_FALSE(isEnabled("menu.undo"));
    panels.toOpen = {{folder / "Larkspur.app"}};
    click("toolbar.addFiles");
    ASSERT_EQ(state.project().items.size(), 2U);
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(the<QAction>("menu.undo").text().remove('&'), "Undo Add Item");

    click("toolbar.addImage");
    EXPECT_TRUE(sheetIsOpen());
    EXPECT_FALSE(isEnabled("menu.save"));
    EXPECT_FALSE(isEnabled("menu.undo"));
    const std::size_t overlays = state.project().overlayImages.size();
    click("picker.tile.arrow_blue_bold");
    click("picker.add");
    EXPECT_FALSE(sheetIsOpen());
    ASSERT_EQ(state.project().overlayImages.size(), overlays + 1);
    EXPECT_EQ(state.project().overlayImages.back().builtInArrowID, "arrow_blue_bold");
    EXPECT_TRUE(the<ToolButton>("toolbar.background").isChecked());
    EXPECT_TRUE(the<ToolButton>("tab.arrange").isChecked());

    click("toolbar.addText");
    the<QPlainTextEdit>("arrange.textContent").setPlainText("Drag\u00A0me");
    EXPECT_EQ(state.selectedTextOverlay()->text, "Drag\u00A0me") << "a no-break space stays one";
    choose("menu.undo");
    choose("menu.undo");
    EXPECT_EQ(state.project().overlayImages.size(), overlays + 1);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(state.project().overlayImages.size(), overlays);
    choose("menu.redo");
    choose("menu.redo");
    EXPECT_FALSE(state.project().textOverlays.empty());

    click("toolbar.contents");
    EXPECT_FALSE(the("toolbar.remove").isEnabled());
    EXPECT_FALSE(isEnabled("menu.delete"));
    choose("menu.selectNext");
    ASSERT_TRUE(state.selectedItem());
    EXPECT_TRUE(the("toolbar.remove").isEnabled());
    click("toolbar.contents"); // the chosen mode stays chosen
    EXPECT_TRUE(the<ToolButton>("toolbar.contents").isChecked());
    click("toolbar.remove");
    EXPECT_EQ(state.project().items.size(), 1U);
}

TEST_F(Session, leavesTheMenusAloneDuringADrag)
{
    const auto step = [this](double x) { state.edit({}, [x](DMGProject& project) { project.windowWidth = x; }); };
    state.beginGesture();
    step(500);
    int changes = 0;
    for (QAction* action : window->findChildren<QAction*>())
        QObject::connect(action, &QAction::changed, window.get(), [&changes] { ++changes; });
    step(510);
    EXPECT_EQ(changes, 0);
    state.endGesture();
}

TEST_F(Session, showsABuildFromItsStartToItsOutcome)
{
    state.edit({}, [this](DMGProject& project) { project = build.typicalProject(); });
    click("toolbar.build");
    EXPECT_EQ(panels.saved.size(), 1U);
    EXPECT_FALSE(sheetIsOpen()) << "nobody chose a place";

    panels.toSave = {build.output};
    press(Qt::Key_B, Qt::ControlModifier);
    ASSERT_TRUE(sheetIsOpen());
    EXPECT_EQ(title("build.title"), "Building My App.dmg");
    EXPECT_TRUE(the("build.hide").hasFocus());
    EXPECT_FALSE(isEnabled("menu.buildDmg"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(sheetIsOpen());
    EXPECT_TRUE(state.isBuilding()) << "it goes on when hidden";
    EXPECT_FALSE(isEnabled("menu.buildDmg"));
    click("toolbar.build");
    EXPECT_TRUE(sheetIsOpen());
    EXPECT_EQ(panels.saved.size(), 2U) << "a second build began";
    waitForBuild();
    QCoreApplication::processEvents();
    EXPECT_EQ(title("build.title"), "My App.dmg is ready");
    EXPECT_TRUE(the("build.reveal").hasFocus());
    click("build.reveal");
    EXPECT_EQ(desktop.revealed, std::vector<fs::path>{build.output});

    panels.toSave = {folder / "saved.log"};
    click("build.saveLog");
    EXPECT_EQ(readFile(folder / "saved.log", 1'000'000), state.buildLog());
    click("build.close");
    EXPECT_FALSE(sheetIsOpen());
    EXPECT_TRUE(isEnabled("menu.buildDmg"));
}

TEST_F(Session, tellsHowAHiddenBuildEnded)
{
    state.edit({}, [this](DMGProject& project) { project = build.typicalProject(); });
    for (const bool choosing : {false, true}) {
        SCOPED_TRACE(choosing ? "while an arrow is chosen" : "while nothing covers the window");
        panels.toSave = {build.output};
        click("toolbar.build");
        press(Qt::Key_Escape);
        ASSERT_FALSE(sheetIsOpen());
        if (choosing)
            click("toolbar.addImage");
        waitForBuild();
        QCoreApplication::processEvents();
        EXPECT_EQ(state.showArrowPicker(), choosing) << "the picker stays";
        if (choosing)
            press(Qt::Key_Escape);
        EXPECT_TRUE(sheetIsOpen());
        EXPECT_TRUE(the("build.reveal").hasFocus());
        click("build.close");
    }
}

TEST_F(Session, tabsFromTheCanvasThroughThePanelToItsTabs)
{
    state.edit({}, [this](DMGProject& project) { project = build.typicalProject(); });
    state.selectOverlay(state.project().overlayImages.front().id); // its part of the panel is made only now
    the("canvas").setFocus(Qt::TabFocusReason);
    const QWidget& panel = the("inspector.panel");
    const QWidget& tabs = the("inspector.tabs");
    const auto isIn = [](const QWidget& area) { return area.isAncestorOf(QApplication::focusWidget()); };
    const auto walk = [&](Qt::Key key, const QWidget& from, const QWidget& to) {
        for (int i = 0; i < 40 && !isIn(to); ++i) {
            EXPECT_TRUE(isIn(from)) << QApplication::focusWidget()->objectName().toStdString();
            press(key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        }
        EXPECT_TRUE(isIn(to));
    };
    while (!isIn(panel) && !HasFailure()) {
        press(Qt::Key_Tab);
        EXPECT_FALSE(isIn(tabs) || isIn(the("toolbar")));
    }
    const QWidget* first = QApplication::focusWidget();
    walk(Qt::Key_Tab, panel, tabs);
    walk(Qt::Key_Tab, tabs, the("toolbar"));
    walk(Qt::Key_Backtab, the("toolbar"), tabs);
    walk(Qt::Key_Backtab, tabs, panel);
    for (int i = 0; i < 40 && QApplication::focusWidget() != first; ++i)
        press(Qt::Key_Backtab, Qt::ShiftModifier);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(isIn(the("workArea")));
}

TEST_F(Session, leadsFromAFailureToItsCause)
{
    DMGProject project = build.typicalProject();
    project.items[0].sourcePath = "/nowhere/Larkspur.app";
    state.edit({}, [&](DMGProject& p) { p = project; });
    panels.toSave = {build.output};
    click("toolbar.build");
    waitForBuild();
    QCoreApplication::processEvents();
    EXPECT_EQ(title("build.title"), "The image could not be built");
    EXPECT_TRUE(the("build.remedy").hasFocus());
    press(Qt::Key_Escape);
    EXPECT_FALSE(sheetIsOpen());
    panels.toSave = {build.output};
    click("toolbar.build");
    waitForBuild();
    QCoreApplication::processEvents();
    click("build.remedy");
    EXPECT_FALSE(sheetIsOpen());
    EXPECT_EQ(state.selection(), project.items[0].id);
    EXPECT_EQ(state.inspectorTab(), InspectorTab::fileInfo);
}

TEST_F(Session, asksBeforeItCloses)
{
    QSignalSpy closed(window.get(), &MainWindow::closed);
    state.markDirty();
    alerts.answers = {2}; // Cancel
    window->close();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(closed.count(), 0);
    alerts.answers = {1}; // Don't Save
    choose("menu.quit");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(Session, opensADocumentThatIsDropped)
{
    const fs::path file = folder / "Larkspur.velmora";
    writeFile(file, Document::encode(build.typicalProject()));
    const auto drop = [this](const fs::path& dropped) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(dropped.string()))});
        QDragEnterEvent enter({200, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        enter.ignore();
        QApplication::sendEvent(window.get(), &enter);
        QDropEvent event({200, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(window.get(), &event);
        QCoreApplication::processEvents();
        return enter.isAccepted();
    };
    EXPECT_FALSE(drop(folder / "Larkspur.app"));
    EXPECT_TRUE(drop(file));
    EXPECT_EQ(window->windowTitle(), "Larkspur.velmora[*]");
    // It is now the latest of the recent ones.
    state.newProject();
    the<QMenu>("menu.openRecent").actions().front()->trigger();
    EXPECT_EQ(state.documentURL(), file);
    choose("menu.clearRecent");
    EXPECT_TRUE(state.recentDocuments().empty());
}

TEST_F(Session, stepsThroughItsAreas)
{
    const auto areaOfFocus = [this] {
        for (const char* area : {"toolbar", "workArea", "inspector.panel", "inspector.tabs"}) {
            if (the(area).isAncestorOf(QApplication::focusWidget()))
                return std::string(area);
        }
        return std::string("nowhere");
    };
    std::vector<std::string> visited{areaOfFocus()};
    for (int i = 0; i < 4; ++i) {
        press(Qt::Key_F6);
        visited.push_back(areaOfFocus());
    }
    EXPECT_EQ(visited,
              (std::vector<std::string>{"workArea", "inspector.panel", "inspector.tabs", "toolbar", "workArea"}));
    press(Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_EQ(areaOfFocus(), "toolbar");
}

TEST_F(Session, opensSettingsOnThePageThatWasAskedFor)
{
    choose("menu.helpPreferences");
    choose("menu.theme");
    auto& list = the<QListWidget>("settings.list");
    EXPECT_EQ(list.currentRow(), 0);
    EXPECT_EQ(store->intValue("settingsTab"), 0);
    QTest::mouseClick(&the("settings.theme.emerald"), Qt::LeftButton, {}, {8, 8});
    EXPECT_EQ(themes.theme(), AppTheme::emerald);
    list.setCurrentRow(3);
    choose("menu.settings");
    EXPECT_EQ(list.currentRow(), 3) << "without a wish the last page is shown";
}

TEST(WindowSize, fillsTheScreenUnlessTheUserDoesNotWantIt)
{
    WindowWorld fresh;
    fresh.show();
    EXPECT_TRUE(fresh.window->isMaximized());
    fresh.choose("menu.openMaximized");
    EXPECT_EQ(fresh.store->boolValue(WindowPrefs::openMaximizedKey), false);
    fresh.choose("menu.defaultSize");
    EXPECT_FALSE(fresh.window->isMaximized());
    EXPECT_EQ(fresh.window->size(), QSize(1180, 760));
    fresh.choose("menu.fillScreen");
    EXPECT_TRUE(fresh.window->isMaximized());

    WindowWorld plain;
    plain.store->setBool(WindowPrefs::openMaximizedKey, false);
    plain.show();
    EXPECT_EQ(plain.window->size(), QSize(1180, 760));
}

} // namespace
} // namespace velmora::testing
