// A whole piece of work, from an application to its image, with nothing but keys.

#include "app/window_world.h"

#include "app/clipped_label.h"
#include "app/kit/sheet_host.h"
#include "app/settings/settings_window.h"

#include <QMenuBar>
#include <gtest/gtest.h>

#include <cmath>

namespace velmora::testing
{
namespace
{

struct KeyboardSession : ::testing::Test, StillLook, WindowWorld {
    void SetUp() override { show(); }
    [[nodiscard]] static QString focused()
    {
        const QWidget* focus = QApplication::focusWidget();
        return focus ? focus->objectName() : QString();
    }
    /// Presses a key until the control of this name has the focus.
    void walkTo(const QString& name, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QStringList seen;
        for (int i = 0; i < 40 && focused() != name; ++i) {
            press(key, modifiers);
            seen << focused();
        }
        ASSERT_EQ(focused(), name) << qPrintable(seen.join(", "));
    }
    /// From anywhere in the window to a tool, and presses it.
    void useTool(const QString& name)
    {
        while (!focused().startsWith("toolbar.")) {
            const QString before = focused();
            press(Qt::Key_F6);
            ASSERT_NE(focused(), before);
        }
        walkTo(name, Qt::Key_Down);
        press(Qt::Key_Space);
    }
    void type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
};

TEST_F(KeyboardSession, leadsFromAnApplicationToItsImage)
{
    panels.toOpen = {{build.typicalProject().items.front().sourcePath}};
    useTool("toolbar.addFiles");
    ASSERT_EQ(state.project().items.size(), 2U);

    press(Qt::Key_F6);
    ASSERT_EQ(focused(), "canvas");
    const auto added = state.project().items.back();
    for (int i = 0; i < 5 && state.selection() != added.id; ++i)
        press(Qt::Key_Tab);
    ASSERT_EQ(state.selection(), added.id);
    press(Qt::Key_Right);
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(state.project().items.back().x, added.x + 1);
    EXPECT_EQ(std::abs(state.project().items.back().y - added.y), 10);

    useTool("toolbar.addImage");
    ASSERT_EQ(focused(), "picker.tile.arrow_pro_swoosh");
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    EXPECT_EQ(focused(), "picker.tile.arrow_blue_3d") << "three in a row";
    press(Qt::Key_Return);
    EXPECT_EQ(state.project().overlayImages.back().builtInArrowID, "arrow_blue_3d");

    useTool("toolbar.addText");
    press(Qt::Key_F6);
    ASSERT_EQ(focused(), "canvas");
    press(Qt::Key_Return); // to the selection's first field
    walkTo("arrange.textContent", Qt::Key_Tab);
    const std::string before = state.selectedTextOverlay()->text;
    press(Qt::Key_A, Qt::ControlModifier);
    type("Drag me");
    EXPECT_EQ(state.selectedTextOverlay()->text, "Drag me");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(state.selectedTextOverlay()->text, before) << "what was typed in one go is one step";
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(state.selectedTextOverlay()->text, "Drag me");

    press(Qt::Key_Comma, Qt::ControlModifier);
    auto* preferences = window->findChild<SettingsWindow*>();
    ASSERT_TRUE(preferences && QTest::qWaitFor([&] { return QApplication::activeWindow() == preferences; }));
    EXPECT_EQ(focused(), "settings.list");
    press(Qt::Key_Home);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "settings.theme.default");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(themes.theme(), AppTheme::emerald);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "settings.theme.emerald") << "Tab leads to what is chosen";
    press(Qt::Key_Escape);
    EXPECT_FALSE(preferences->isVisible());
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == window.get(); }));

    useTool("toolbar.licenses");
    press(Qt::Key_F6);
    ASSERT_EQ(focused(), "license.include");
    press(Qt::Key_Space);
    press(Qt::Key_Tab);
    type("Be kind.");
    EXPECT_TRUE(state.project().licenseEnabled);
    EXPECT_EQ(state.project().licenseText, "Be kind.");

    panels.toSave = {build.output};
    press(Qt::Key_B, Qt::ControlModifier);
    ASSERT_EQ(focused(), "build.hide");
    waitForBuild();
    QCoreApplication::processEvents();
    ASSERT_EQ(focused(), "build.reveal") << the<ClippedLabel>("build.title").text().toStdString();
    press(Qt::Key_Return);
    EXPECT_EQ(desktop.revealed, std::vector<fs::path>{build.output});
    press(Qt::Key_Escape);
    EXPECT_FALSE(window->findChild<SheetHost*>()->isOpen());
}

TEST_F(KeyboardSession, leadsFromALabelsLetterToItsField)
{
    const struct {
        int tab;
        const char* label;
        const char* field;
    } rows[] = {{InspectorTab::layout, "Size", "layout.windowWidth"},
                {InspectorTab::layout, "Icon size", "layout.iconSize"},
                {InspectorTab::volume, "Name", "volume.name"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        state.setInspectorTab(row.tab);
        QString letter;
        for (const QLabel* label : the("inspector.panel").findChildren<QLabel*>()) {
            if (label->isVisible() && label->text().remove('&') == row.label)
                letter = QKeySequence::mnemonic(label->text()).toString().right(1);
        }
        ASSERT_FALSE(letter.isEmpty());
        for (const QAction* menu : window->menuBar()->actions())
            EXPECT_NE(QKeySequence::mnemonic(menu->text()).toString().right(1), letter);
        press(static_cast<Qt::Key>(letter[0].toUpper().unicode()), Qt::AltModifier);
        EXPECT_EQ(focused(), row.field);
    }
}

} // namespace
} // namespace velmora::testing
