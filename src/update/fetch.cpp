#include "update/fetch.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QTimer>

#include <memory>
#include <utility>

namespace velmora
{
namespace
{

QNetworkRequest request(const QUrl& address, const QSslConfiguration& tls, const FetchLimits& limits)
{
    QNetworkRequest result(address);
    result.setSslConfiguration(tls);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    result.setTransferTimeout(static_cast<int>(limits.silence.count()));
    // Bytes are counted as they come: a compressed answer could grow beyond every limit when it is unpacked.
    result.setRawHeader("Accept-Encoding", "identity");
    return result;
}

/// Moves what has arrived into `body`. One byte past the limit is enough to know that it was passed.
void take(QNetworkReply& reply, QByteArray& body, qint64 largest)
{
    if (!reply.isOpen())
        return; // cancelled
    body.append(reply.read(largest + 1 - body.size()));
    if (body.size() > largest)
        reply.abort();
}

} // namespace

void fetch(QNetworkAccessManager& manager, const QUrl& address, const QSslConfiguration& tls, const FetchLimits& limits,
           QObject* context, std::function<void(const std::optional<QByteArray>& body)> done)
{
    QNetworkReply* reply = manager.get(request(address, tls, limits));
    // What nobody has read yet is bounded as well, should this thread be busy with something else.
    reply->setReadBufferSize(limits.largestBody + 1);
    const auto body = std::make_shared<QByteArray>();
    const qint64 largest = limits.largestBody;
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [=] { take(*reply, *body, largest); });
    QTimer::singleShot(limits.total, reply, [reply] { reply->abort(); });
    QObject::connect(reply, &QNetworkReply::finished, context, [=, done = std::move(done)] {
        reply->deleteLater();
        take(*reply, *body, largest);
        // Only this file cancels, and only because a limit was passed.
        const bool endedEarly = reply->error() == QNetworkReply::OperationCanceledError || body->size() > largest;
        done(endedEarly ? std::nullopt : std::optional(*body));
    });
}

} // namespace velmora
