#include "app/application.h"

#include "app/startup_time.h"
#include "app/text.h"
#include "app/theme/theme_manager.h"
#include "app/typing.h"
#include "l10n/language_manager.h"
#include "pipeline/build_environment.h"
#include "platform/folders.h"
#include "platform/signals.h"

#include <QApplication>
#include <QFileOpenEvent>
#include <QTimer>

#include <chrono>

namespace velmora
{
namespace
{

/// Until the question that a person is being asked has been answered.
constexpr std::chrono::milliseconds retryPause{250};

} // namespace

Application::Application(const StopSource& stop)
    : m_arrows({.resources = Folders::resources(),
                .applicationSupport = Folders::applicationSupport(),
                .temporary = Folders::temporary()},
               m_pictures),
      m_state(
          {.panels = m_panels,
           .alerts = m_alerts,
           .fontPanel = m_fontPanel,
           .desktop = m_desktop,
           .settings = *m_settings,
           .pictures = m_pictures,
           .arrows = m_arrows,
           .buildEnvironment =
               [this](StopToken token) { return BuildEnvironment::system(m_arrows, m_pictures, std::move(token)); }}),
      m_updater(officialUpdateSource(), *m_settings, m_alerts, m_desktop),
      m_stop(stop)
{
    if (const QColor accent = m_desktopLook.accent; accent.isValid())
        ThemeManager::shared().setSystemAccent([accent] { return accent; });
    applyTheme();
    m_window = std::make_unique<MainWindow>(AppContext{.state = m_state,
                                                       .themes = ThemeManager::shared(),
                                                       .languages = LanguageManager::shared(),
                                                       .updater = m_updater,
                                                       .settings = *m_settings,
                                                       .desktop = m_desktop,
                                                       .pictures = m_pictures,
                                                       .arrows = m_arrows});
    connect(
        m_window.get(), &MainWindow::closed, this, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
    connect(&ThemeManager::shared(), &ThemeManager::themeChanged, this, &Application::applyTheme);
    qApp->installEventFilter(this);
    quitWhenStopped();
}

Application::~Application()
{
    m_stop.requestStop();
    if (m_stopWatch.joinable())
        m_stopWatch.join();
}

void Application::applyTheme()
{
    const ThemeManager& themes = ThemeManager::shared();
    applyLook(*qApp, makeLook(themes.theme(), themes.accent(), m_desktopLook));
}

void Application::start(const std::vector<std::filesystem::path>& documents)
{
    reportFirstPaint(*m_window);
    m_window->showAtStart();
    // The first paint comes first.
    QTimer::singleShot(0, &m_updater, &Updater::checkAtStartUp);
    // One window holds one document; the last one named is the one that a person looks for.
    if (!documents.empty())
        QTimer::singleShot(0, this, [this, document = documents.back()] { openWhenFree(document); });
}

bool Application::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FileOpen) {
        const QString file = static_cast<QFileOpenEvent*>(event)->file();
        if (!file.isEmpty())
            openWhenFree(nativePath(file));
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void Application::openWhenFree(const std::filesystem::path& document)
{
    if (QApplication::activeModalWidget()) {
        QTimer::singleShot(retryPause, this, [this, document] { openWhenFree(document); });
        return;
    }
    commitTyping();
    m_state.openHandedOver(document);
}

void Application::quitWhenStopped()
{
    m_stopWatch = std::thread([this, token = m_stop.token()] {
        while (token.sleepFor(std::chrono::hours(1))) {
        }
        // Nobody may be there to answer a question: a running build is stopped and cleared up, and the program ends.
        QMetaObject::invokeMethod(
            this, [] { QCoreApplication::exit(128 + lastStopSignal()); }, Qt::QueuedConnection);
    });
}

} // namespace velmora
