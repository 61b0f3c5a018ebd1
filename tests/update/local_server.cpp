#include "update/local_server.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>

namespace velmora
{
namespace
{

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void sendEndlessly(QTcpSocket* socket, const QByteArray& bytes)
{
    auto* timer = new QTimer(socket);
    QObject::connect(timer, &QTimer::timeout, socket, [socket, bytes] {
        auto* tls = qobject_cast<QSslSocket*>(socket);
        if (socket->bytesToWrite() == 0 && (tls == nullptr || tls->encryptedBytesToWrite() == 0))
            socket->write(bytes);
    });
    timer->start(1);
}

void sendDrip(QTcpSocket* socket, const Answer& answer)
{
    auto* timer = new QTimer(socket);
    QObject::connect(timer, &QTimer::timeout, socket, [=, next = qsizetype(0)]() mutable {
        if (next < answer.drip.size()) {
            socket->write(answer.drip.mid(next++, 1));
            return;
        }
        timer->stop();
        if (answer.closes)
            socket->disconnectFromHost();
    });
    timer->start(answer.everyByte);
}

} // namespace

std::optional<TlsIdentity> TlsIdentity::make(const QString& alternativeName)
{
    const QTemporaryDir folder;
    const QString keyFile = folder.filePath(QStringLiteral("key.pem"));
    const QString certificateFile = folder.filePath(QStringLiteral("certificate.pem"));
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("ec"),
                   QStringLiteral("-pkeyopt"), QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes"),
                   QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
                   QStringLiteral("/CN=Local Test"), QStringLiteral("-addext"),
                   QStringLiteral("subjectAltName=") + alternativeName, QStringLiteral("-keyout"), keyFile,
                   QStringLiteral("-out"), certificateFile});
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        return std::nullopt;
    TlsIdentity identity{QSslCertificate(contentOf(certificateFile)), QSslKey(contentOf(keyFile), QSsl::Ec)};
    if (identity.certificate.isNull() || identity.key.isNull())
        return std::nullopt;
    return identity;
}

Answer Answer::ok(const QByteArray& body)
{
    return of("200 OK\r\nContent-Length: " + QByteArray::number(body.size()), body);
}

Answer Answer::of(const QByteArray& statusAndHeaders, const QByteArray& body)
{
    return {.bytes = "HTTP/1.1 " + statusAndHeaders + "\r\nConnection: close\r\n\r\n" + body};
}

LocalServer::LocalServer(const std::optional<TlsIdentity>& identity) : m_tls(identity.has_value())
{
    if (identity) {
        auto server = std::make_unique<QSslServer>();
        auto configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(identity->certificate);
        configuration.setPrivateKey(identity->key);
        server->setSslConfiguration(configuration);
        m_server = std::move(server);
    } else {
        m_server = std::make_unique<QTcpServer>();
    }
    QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(), [this] {
        while (QTcpSocket* socket = m_server->nextPendingConnection())
            serve(socket);
    });
    m_server->listen(QHostAddress::LocalHost);
}

QUrl LocalServer::url(const QString& path) const
{
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3")
                    .arg(m_tls ? QStringLiteral("https") : QStringLiteral("http"))
                    .arg(m_server->serverPort())
                    .arg(path));
}

void LocalServer::serve(QTcpSocket* socket)
{
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    const auto read = [this, socket, head = QByteArray()]() mutable {
        head += socket->readAll();
        if (!head.endsWith("\r\n\r\n"))
            return;
        respond(socket, head.left(head.indexOf("\r\n")));
        head.clear();
    };
    QObject::connect(socket, &QTcpSocket::readyRead, socket, read);
    if (socket->bytesAvailable() > 0)
        emit socket->readyRead();
}

void LocalServer::respond(QTcpSocket* socket, const QByteArray& requestLine)
{
    m_requests.append(requestLine);
    const auto found = m_answers.constFind(requestLine.split(' ').value(1));
    if (found == m_answers.constEnd())
        return;
    socket->write(found->bytes);
    if (!found->endless.isEmpty())
        sendEndlessly(socket, found->endless);
    else if (!found->drip.isEmpty())
        sendDrip(socket, *found);
    else if (found->closes)
        socket->disconnectFromHost();
}

bool waitUntil(const std::function<bool()>& done)
{
    const QDeadlineTimer deadline(std::chrono::seconds(5));
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QEventLoop loop;
        QTimer::singleShot(5, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

} // namespace velmora
