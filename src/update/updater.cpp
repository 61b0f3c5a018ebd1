#include "update/updater.h"

#include "platform/version.h"
#include "update/app_links.h"
#include "update/update_feed.h"
#include "update/version_order.h"

#include <QString>

#include <utility>

namespace velmora
{
namespace
{

/// The longest version that an alert shows, in UTF-16 code units: whatever a feed says, the alert fits a screen.
constexpr int longestShownVersion = 64;

/// `text` with the argument in the place of its "%@".
std::string formatted(const std::string& text, const std::string& argument)
{
    const auto place = text.find("%@");
    if (place == std::string::npos)
        return text;
    return text.substr(0, place) + argument + text.substr(place + 2);
}

std::string shown(const std::string& version)
{
    const QString text = QString::fromStdString(version).simplified();
    if (text.size() <= longestShownVersion)
        return text.toStdString();
    return text.left(longestShownVersion).toStdString() + "…";
}

bool isNewer(const std::string& version, const std::string& current)
{
    const auto units = [](const std::string& text) { return QString::fromStdString(text).toStdU16String(); };
    return compareVersions(units(version), units(current)) > 0;
}

} // namespace

UpdateSource officialUpdateSource()
{
    UpdateSource source;
    source.currentVersion = programVersion;
    source.appcast = QUrl(QString::fromLatin1(AppLinks::appcast), QUrl::StrictMode);
    source.download = AppLinks::download;
    return source;
}

Updater::Updater(UpdateSource source, SettingsStore& settings, Alerts& alerts, Desktop& desktop, TextLookup text)
    : m_source(std::move(source)), m_settings(settings), m_alerts(alerts), m_desktop(desktop), m_text(std::move(text))
{
}

bool Updater::autoCheck() const
{
    return m_settings.boolValue(storageKey).value_or(true);
}

void Updater::setAutoCheck(bool automatic)
{
    m_settings.setBool(storageKey, automatic);
    emit autoCheckChanged(automatic);
}

void Updater::checkAtStartUp()
{
    if (autoCheck())
        check(false);
}

void Updater::check(bool userInitiated)
{
    fetch(m_network, m_source.appcast, m_source.tls, m_source.limits, this,
          [this, userInitiated](const std::optional<QByteArray>& body) {
              // Out of the network's call first: an alert runs the event loop for as long as it is open.
              QMetaObject::invokeMethod(
                  this,
                  [this, body, userInitiated] { emit checkFinished(present(body, userInitiated), userInitiated); },
                  Qt::QueuedConnection);
          });
}

UpdateOutcome Updater::present(const std::optional<QByteArray>& body, bool userInitiated)
{
    const auto feed = body ? parseUpdateFeed(body->toStdString()) : std::nullopt;
    if (feed && isNewer(feed->version, m_source.currentVersion)) {
        announce(feed->version, feed->url);
        return UpdateOutcome::newer;
    }
    if (userInitiated && feed) {
        m_alerts.show({.title = m_text("updates.upto_date_title"),
                       .text = formatted(m_text("updates.upto_date_body"), m_source.currentVersion),
                       .style = AlertStyle::informational});
    } else if (userInitiated) {
        m_alerts.show({.title = m_text("updates.check_fail_title"), .text = m_text("updates.check_fail_body")});
    }
    return feed ? UpdateOutcome::upToDate : UpdateOutcome::failed;
}

void Updater::announce(const std::string& version, const std::optional<std::string>& url)
{
    const Alert alert{.title = formatted(m_text("updates.available"), shown(version)),
                      .text = formatted(m_text("updates.available_body"), m_source.currentVersion),
                      .style = AlertStyle::informational,
                      .buttons = {m_text("updates.download"), m_text("updates.later")}};
    if (m_alerts.show(alert) == 0)
        m_desktop.openAddress(addressToOpen(url, m_source.download));
}

} // namespace velmora
