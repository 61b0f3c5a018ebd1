#include "app/portraits/scenes.h"

#include "app/settings/settings_window.h"
#include "app/window_size.h"
#include "app/window_world.h"

#include <QComboBox>
#include <QDialog>
#include <QListWidget>
#include <QMenu>

#include <string>

namespace velmora
{
namespace
{

constexpr const char* agreement = R"(AURORA NOTES END USER AGREEMENT

1. What you may do
You may install Aurora Notes on every computer that you own or manage, and
make one copy for safe keeping. You may not rent it out or pass it on.

2. Updates
Updates that we publish for your version belong to this agreement.

3. No warranty
Aurora Notes is supplied as it is. We take care in making it, but cannot
promise that it suits every purpose or runs without fault.)";

/// An editor that shows the sample project, and the camera before it.
class Walk
{
public:
    Walk(AppTheme theme, const TakePicture& take) : m_take(take)
    {
        // The real arrow in the place of the tests' own.
        const std::filesystem::path arrows = std::filesystem::path(VELMORA_TEST_SOURCE_DIR) / "resources/Arrows";
        std::filesystem::copy(arrows, m_world.build.home / "resources/Arrows",
                              std::filesystem::copy_options::overwrite_existing |
                                  std::filesystem::copy_options::recursive);
        m_world.themes.setTheme(theme);
        m_world.store->setBool(WindowPrefs::openMaximizedKey, false);
        m_world.show();
        m_world.the("toolbar.contents").setFocus(Qt::MouseFocusReason); // no ring left over from the theme before
        m_world.the("canvas").setFocus(Qt::MouseFocusReason);
        openSample();
    }
    void panels()
    {
        shoot("layout");
        m_world.state.setInspectorTab(InspectorTab::volume);
        shoot("volume");
        m_world.state.edit({}, [](DMGProject& project) {
            project.volumeName.clear();
            project.encryption = ImageEncryption::aes256;
            project.imageSizeAutomatic = false;
            project.signingMode = SigningMode::signAndNotarize;
        });
        shoot("volume-wrong");
        m_world.state.undo();
        m_world.state.setInspectorTab(InspectorTab::fileInfo);
        shoot("file-info-nothing");
        m_world.state.selectItem(project().items.front().id);
        shoot("file-info");
        m_world.state.setInspectorTab(InspectorTab::arrange);
        shoot("arrange-item");
        m_world.state.setInspectorTab(InspectorTab::text);
        shoot("text");
        m_world.state.editBackground();
        if (!project().overlayImages.empty()) {
            m_world.state.selectOverlay(project().overlayImages.front().id);
            shoot("arrange-overlay");
        }
        if (!project().textOverlays.empty()) {
            m_world.state.selectTextOverlay(project().textOverlays.front().id);
            shoot("arrange-text");
        }
        m_world.state.newProject();
        m_world.state.setInspectorTab(InspectorTab::arrange);
        shoot("starter-nothing-selected");
        m_world.state.setInspectorTab(InspectorTab::layout);
        m_world.state.edit({}, [](DMGProject& project) { project.backgroundKind = BackgroundKind::image; });
        shoot("layout-no-image");
        m_world.state.undo();
        m_world.state.addFiles({"/nowhere/Larkspur.app"});
        m_world.state.setInspectorTab(InspectorTab::fileInfo);
        m_world.state.selectItem(project().items.back().id);
        shoot("file-info-missing");
        openSample();
    }
    void license()
    {
        m_world.state.editLicenses();
        shoot("license-empty");
        m_world.state.edit({}, [](DMGProject& project) {
            project.licenseText = agreement;
            project.licenseEnabled = true;
        });
        m_world.the("license.text").setFocus(Qt::TabFocusReason);
        shoot("license");
        m_world.state.edit({}, [](DMGProject& project) { project.licenseEnabled = false; });
        shoot("license-left-out");
        openSample();
    }
    void sheets()
    {
        m_world.state.presentOverlayPicker();
        shoot("picker");
        m_world.press(Qt::Key_Right);
        m_world.press(Qt::Key_Down);
        shoot("picker-keyboard");
        m_world.press(Qt::Key_Escape);

        m_world.state.edit({}, [this](DMGProject& project) { project = m_world.build.typicalProject(); });
        build();
        shoot("build-running");
        m_world.waitForBuild();
        shoot("build-finished");
        m_world.click("build.close");
        m_world.state.edit({}, [](DMGProject& project) { project.encryption = ImageEncryption::aes256; });
        build();
        m_world.waitForBuild();
        shoot("build-failed");
        m_world.click("build.close");
        openSample();
    }
    void windows()
    {
        for (int tab = 0; tab < 6; ++tab) {
            m_world.window->openSettings(tab);
            auto* settings = m_world.window->findChild<SettingsWindow*>();
            settle();
            m_take(QStringLiteral("settings-%1").arg(tab), settings->grab());
            if (tab == 0 || tab == 2) {
                QTest::keyClick(settings->focusWidget(), Qt::Key_Tab);
                settle();
                m_take(QStringLiteral("settings-%1-keyboard").arg(tab), settings->grab());
                m_world.the<QListWidget>("settings.list").setFocus(Qt::TabFocusReason);
            }
        }
        m_world.window->findChild<SettingsWindow*>()->close();
        m_world.choose("menu.about");
        settle();
        m_take(QStringLiteral("about"), m_world.window->findChild<QDialog*>("aboutPanel")->grab());
        m_world.window->findChild<QDialog*>("aboutPanel")->close();
        auto& menu = m_world.the<QMenu>("menu.file");
        menu.popup({10, 10});
        menu.setActiveAction(menu.actions().value(1));
        settle();
        m_take(QStringLiteral("menu"), menu.grab());
        menu.close();
        popUp();
    }

private:
    [[nodiscard]] const DMGProject& project() const { return m_world.state.project(); }
    void openSample()
    {
        m_world.alerts.answers = {1}; // what was changed is not saved
        m_world.state.openHandedOver(std::filesystem::path(VELMORA_TEST_SOURCE_DIR) /
                                     "samples/aurora-notes/Aurora Notes.velmora");
        m_world.state.setInspectorTab(InspectorTab::layout);
    }
    void build()
    {
        m_world.panels.toSave = {m_world.build.output};
        m_world.click("toolbar.build");
        QCoreApplication::processEvents();
    }
    /// The list of a pop-up, open.
    void popUp()
    {
        m_world.state.setInspectorTab(InspectorTab::volume);
        settle();
        auto* box = m_world.window->findChild<QComboBox*>();
        if (!box)
            return;
        box->showPopup();
        settle();
        m_take(QStringLiteral("pop-up"), box->findChild<QFrame*>()->window()->grab());
        box->hidePopup();
    }
    static void settle()
    {
        for (int i = 0; i < 4; ++i)
            QTest::qWait(15);
    }
    void shoot(const char* name)
    {
        settle();
        m_take(QLatin1String(name), m_world.window->grab());
    }

    testing::WindowWorld m_world{};
    const TakePicture& m_take;
};

} // namespace

void walkThroughTheEditor(AppTheme theme, const TakePicture& take)
{
    Walk walk(theme, take);
    walk.panels();
    walk.license();
    walk.sheets();
    walk.windows();
}

} // namespace velmora
