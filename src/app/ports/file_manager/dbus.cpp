// Freedesktop.org's File Manager D-Bus Interface: ShowItems(uris, startup id).

#include "app/ports/file_manager.h"
#include "app/text.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QUrl>

namespace velmora
{
namespace
{

/// A file manager may have to be started first.
constexpr int answerTime = 10'000; // milliseconds

} // namespace

void showInFileManager(const std::filesystem::path& file)
{
    const QString name = QStringLiteral("org.freedesktop.FileManager1");
    QDBusMessage call = QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/FileManager1"), name,
                                                       QStringLiteral("ShowItems"));
    const QByteArray address = QUrl::fromLocalFile(qtPath(file)).toEncoded();
    call << QStringList{QString::fromLatin1(address)} << QString();
    const QUrl folder = QUrl::fromLocalFile(qtPath(file.parent_path()));
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, answerTime));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, folder] {
        if (watcher->isError())
            QDesktopServices::openUrl(folder);
        watcher->deleteLater();
    });
}

} // namespace velmora
