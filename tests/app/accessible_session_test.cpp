// The editor as assistive technology has it: by role, name, action, value and text alone.

#include "app/window_world.h"

#include "app/kit/focus_ring.h"
#include "app/settings/settings_window.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

struct AccessibleSession : ::testing::Test, StillLook, WindowWorld {
    void SetUp() override { show(); }
    /// What has this role, and this name or one that begins with it, in `root` and can be seen.
    static QAccessibleInterface* search(QAccessibleInterface* root, QAccessible::Role role, const QString& name)
    {
        if (!root || !root->isValid() || root->state().invisible)
            return nullptr;
        if (root->role() == role && root->text(QAccessible::Name).startsWith(name))
            return root;
        for (int i = 0; i < root->childCount(); ++i) {
            if (QAccessibleInterface* found = search(root->child(i), role, name))
                return found;
        }
        return nullptr;
    }
    QAccessibleInterface& find(QAccessible::Role role, const QString& name)
    {
        QCoreApplication::processEvents();
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (!top->isVisible())
                continue;
            if (auto* found = search(QAccessible::queryAccessibleInterface(top), role, name))
                return *found;
        }
        throw std::runtime_error("nothing is called " + name.toStdString());
    }
    void act(QAccessible::Role role, const QString& name)
    {
        QAccessibleInterface& spoken = find(role, name);
        QAccessibleActionInterface* actions = spoken.actionInterface();
        ASSERT_TRUE(actions) << name.toStdString();
        const QPointer<QAbstractButton> button = qobject_cast<QAbstractButton*>(spoken.object());
        for (const QString& action :
             {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction()}) {
            if (actions->actionNames().contains(action)) {
                actions->doAction(action);
                // Qt's own buttons show the press before it counts.
                ASSERT_TRUE(QTest::qWaitFor([button] { return !button || !button->isDown(); }));
                return;
            }
        }
        FAIL() << name.toStdString() << " cannot be pressed";
    }
    void choose(const QString& command)
    {
        // Menus are not shown for this; their commands are in the tree all the same.
        for (QMenu* menu : window->findChildren<QMenu*>()) {
            QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(menu);
            for (int i = 0; i < spoken->childCount(); ++i) {
                if (spoken->child(i)->text(QAccessible::Name).startsWith(command)) {
                    spoken->child(i)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
                    return;
                }
            }
        }
        FAIL() << "no command is called " << command.toStdString();
    }
    void write(const QString& name, const QString& text)
    {
        QAccessibleInterface& field = find(QAccessible::EditableText, name);
        QAccessibleEditableTextInterface* edit = field.editableTextInterface();
        ASSERT_TRUE(edit) << name.toStdString();
        edit->replaceText(0, field.textInterface()->characterCount(), text);
    }
};

TEST_F(AccessibleSession, leadsFromAnApplicationToItsImage)
{
    panels.toOpen = {{build.typicalProject().items.front().sourcePath}};
    act(QAccessible::Button, "Add Files");
    ASSERT_EQ(state.project().items.size(), 2U);
    act(QAccessible::PageTab, "Layout");
    find(QAccessible::SpinBox, "Window width").valueInterface()->setCurrentValue(700);
    EXPECT_EQ(state.project().windowWidth, 700);

    act(QAccessible::Button, "Add Image");
    act(QAccessible::RadioButton, "Blue Slim");
    act(QAccessible::Button, "Add Arrow");
    EXPECT_EQ(state.project().overlayImages.back().builtInArrowID, "arrow_blue_slim");

    act(QAccessible::Button, "Add Text");
    write("Text", "Drag me");
    ASSERT_TRUE(state.selectedTextOverlay());
    EXPECT_EQ(state.selectedTextOverlay()->text, "Drag me");
    choose("Undo");
    EXPECT_NE(state.selectedTextOverlay()->text, "Drag me");
    choose("Redo");
    EXPECT_EQ(state.selectedTextOverlay()->text, "Drag me");

    choose("Theme");
    EXPECT_EQ(find(QAccessible::RadioButton, "Sky Blue").state().checked, false);
    act(QAccessible::RadioButton, "Sky Blue");
    EXPECT_EQ(themes.theme(), AppTheme::skyBlue);
    EXPECT_EQ(find(QAccessible::RadioButton, "Sky Blue").state().checked, true);
    window->findChild<SettingsWindow*>()->close();

    act(QAccessible::Button, "Licenses");
    act(QAccessible::CheckBox, "Include in the image");
    write("License Agreement", "Be kind.");
    EXPECT_TRUE(state.project().licenseEnabled);
    EXPECT_EQ(state.project().licenseText, "Be kind.");

    panels.toSave = {build.output};
    act(QAccessible::Button, "Build");
    waitForBuild();
    act(QAccessible::Button, "Reveal");
    EXPECT_EQ(desktop.revealed, std::vector<fs::path>{build.output});
}

/// Everything below `root` that Tab leads to has a name and shows when it has the focus.
void examine(QWidget& root, const std::string& where)
{
    for (QWidget* control : root.findChildren<QWidget*>()) {
        if (!(control->focusPolicy() & Qt::TabFocus) || control->focusProxy() || !control->isVisible() ||
            !control->isEnabled() || control->window() != root.window())
            continue;
        SCOPED_TRACE(where + ": " + control->metaObject()->className() + " " + control->objectName().toStdString());
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(control);
        ASSERT_TRUE(spoken);
        EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty());
        EXPECT_FALSE(control->objectName().isEmpty());

        if (QWidget* other = QApplication::focusWidget())
            other->clearFocus();
        const QImage without = control->grab().toImage();
        control->setFocus(Qt::TabFocusReason);
        if (!control->hasFocus())
            continue; // a sheet lies above it
        auto* ring = control->window()->findChild<FocusRing*>();
        const bool ringed = ring && ring->isVisible() && ring->target() == control && focusShapeOf(control).visible;
        EXPECT_TRUE(ringed || control->grab().toImage() != without) << "nothing shows the focus";
    }
}

TEST_F(AccessibleSession, namesEveryControlAndShowsItsFocus)
{
    window->setAttribute(Qt::WA_KeyboardFocusChange);
    state.edit({}, [this](DMGProject& project) { project = build.typicalProject(); });
    const auto lookAtTabs = [this](const std::string& selected) {
        for (int tab = 0; tab < 5; ++tab) {
            state.setInspectorTab(tab);
            examine(*window, "tab " + std::to_string(tab) + " with " + selected);
        }
    };
    state.selectItem(state.project().items.front().id);
    lookAtTabs("an item");
    state.editBackground();
    state.selectOverlay(state.project().overlayImages.front().id);
    lookAtTabs("a picture");
    state.addTextOverlay();
    lookAtTabs("a caption");
    state.edit({}, [](DMGProject& project) {
        project.encryption = ImageEncryption::aes256;
        project.signingMode = SigningMode::signAndNotarize;
        project.imageSizeAutomatic = false;
        project.backgroundKind = BackgroundKind::color;
    });
    lookAtTabs("more fields");
    state.editLicenses();
    examine(*window, "licence editor");
    state.presentOverlayPicker();
    examine(*window, "arrow picker");
    state.setShowArrowPicker(false);
    state.edit({}, [this](DMGProject& project) { project = build.typicalProject(); });
    panels.toSave = {build.output};
    click("toolbar.build");
    examine(*window, "running build");
    waitForBuild();
    QCoreApplication::processEvents();
    examine(*window, "finished build");
    click("build.close");
    WindowWorld::choose("menu.settings");
    auto* preferences = window->findChild<SettingsWindow*>();
    ASSERT_TRUE(QTest::qWaitForWindowActive(preferences));
    preferences->setAttribute(Qt::WA_KeyboardFocusChange);
    for (int page = 0; page < 6; ++page) {
        the<QListWidget>("settings.list").setCurrentRow(page);
        examine(*preferences, "settings " + std::to_string(page));
    }
}

} // namespace
} // namespace velmora::testing
