#pragma once

#include "l10n/l10n.h"
#include "platform/ports/alerts.h"
#include "platform/ports/desktop.h"
#include "platform/settings.h"
#include "update/fetch.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QSslConfiguration>
#include <QUrl>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velmora
{

/// What the updater compares with, and where it looks.
struct UpdateSource {
    std::string currentVersion{};
    QUrl appcast{};         ///< the update feed
    std::string download{}; ///< the page to open when the feed names none
    FetchLimits limits{};
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
};

/// This program and its web site.
UpdateSource officialUpdateSource();

/// How a check ended.
enum class UpdateOutcome { newer, upToDate, failed };

/// Tells a person when a newer version is published. Nothing is remembered between checks; checks that overlap answer
/// each for itself. Used on the user-interface thread; a destroyed updater answers no more.
class Updater : public QObject
{
    Q_OBJECT

public:
    /// The settings key of autoCheck().
    static constexpr const char* storageKey = "autoCheckUpdates";

    /// Looks a user-visible text up by its key.
    using TextLookup = std::function<std::string(std::string_view key)>;

    /// The store and the ports must outlive the updater.
    Updater(UpdateSource source, SettingsStore& settings, Alerts& alerts, Desktop& desktop, TextLookup text = L10n::t);

    [[nodiscard]] const std::string& currentVersion() const { return m_source.currentVersion; }

    /// Whether a check is made at start-up; the user's choice, stored at once.
    [[nodiscard]] bool autoCheck() const;
    void setAutoCheck(bool automatic);

    /// Checks without being asked, when the user lets it.
    void checkAtStartUp();
    /// Starts a check and returns; the outcome is shown later, from the event loop. A newer version is always
    /// announced. That there is none, or that the check failed, is shown only to a person who asked.
    void check(bool userInitiated = true);

signals:
    void autoCheckChanged(bool automatic);
    /// A check has ended and its alert, if there was one, is answered.
    void checkFinished(velmora::UpdateOutcome outcome, bool userInitiated);

private:
    UpdateOutcome present(const std::optional<QByteArray>& body, bool userInitiated);
    void announce(const std::string& version, const std::optional<std::string>& url);

    UpdateSource m_source;
    SettingsStore& m_settings;
    Alerts& m_alerts;
    Desktop& m_desktop;
    TextLookup m_text;
    QNetworkAccessManager m_network;
};

} // namespace velmora
