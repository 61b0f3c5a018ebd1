#pragma once

#include "app/app_context.h"
#include "app/kit/look.h"
#include "app/main_window.h"
#include "app/ports/dialog_file_panels.h"
#include "app/ports/dialog_font_panel.h"
#include "app/ports/message_alerts.h"
#include "app/ports/system_desktop.h"
#include "editor/app_state.h"
#include "platform/settings.h"
#include "platform/stop_token.h"
#include "render/built_in_arrows.h"
#include "render/overlay_images.h"
#include "update/updater.h"

#include <QObject>

#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

namespace velmora
{

/// Everything that the program has once, from the settings to the window. Made after the QApplication.
class Application : public QObject
{
    Q_OBJECT

public:
    /// A stop request ends the program without a question.
    explicit Application(const StopSource& stop);
    ~Application() override;

    /// Shows the window, and the document when one is given.
    void start(const std::vector<std::filesystem::path>& documents);

protected:
    /// Documents that the desktop hands over.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void openWhenFree(const std::filesystem::path& document);
    void applyTheme();
    void quitWhenStopped();

    const DesktopLook m_desktopLook = readDesktop();
    std::unique_ptr<SettingsStore> m_settings = openUserSettings();
    OverlayImageCache m_pictures{};
    BuiltInArrowLibrary m_arrows;
    DialogFilePanels m_panels{};
    MessageAlerts m_alerts{};
    DialogFontPanel m_fontPanel{};
    SystemDesktop m_desktop{};
    AppState m_state;
    Updater m_updater;
    std::unique_ptr<MainWindow> m_window{}; ///< made once the application has its look
    StopSource m_stop;
    std::thread m_stopWatch{};
};

} // namespace velmora
