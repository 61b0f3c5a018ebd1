#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace velmora
{

/// A certificate that vouches for itself, with its key.
struct TlsIdentity {
    QSslCertificate certificate{};
    QSslKey key{};

    /// A fresh one for the address or host, made by the openssl command ("IP:127.0.0.1", "DNS:example.test"); nothing
    /// when that command does not work here.
    static std::optional<TlsIdentity> make(const QString& alternativeName);
};

/// What a server sends once it has seen a request.
struct Answer {
    QByteArray bytes{}; ///< sent at once
    QByteArray drip{};  ///< sent after them, byte by byte
    std::chrono::milliseconds everyByte{0};
    QByteArray endless{}; ///< sent again for as long as it is taken
    bool closes = true;   ///< ends the connection when all is sent

    static Answer ok(const QByteArray& body);
    static Answer of(const QByteArray& statusAndHeaders, const QByteArray& body);
};

/// A web server on the loopback address that answers every request in the same way, with TLS or without.
class LocalServer
{
public:
    explicit LocalServer(const std::optional<TlsIdentity>& identity);

    /// Answers for a path; a path without an answer is met with silence.
    void answer(const QByteArray& path, const Answer& with) { m_answers[path] = with; }
    [[nodiscard]] QUrl url(const QString& path) const;
    /// The request lines seen so far.
    [[nodiscard]] const QList<QByteArray>& requests() const { return m_requests; }

private:
    void serve(QTcpSocket* socket);
    void respond(QTcpSocket* socket, const QByteArray& requestLine);

    bool m_tls = false;
    std::unique_ptr<QTcpServer> m_server;
    QHash<QByteArray, Answer> m_answers;
    QList<QByteArray> m_requests;
};

/// Runs the event loop until `done` says so; false when that takes longer than five seconds.
bool waitUntil(const std::function<bool()>& done);

} // namespace velmora
