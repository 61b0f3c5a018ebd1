#pragma once

#include <QByteArray>
#include <QSslConfiguration>
#include <QUrl>
#include <QtGlobal>

#include <chrono>
#include <functional>
#include <optional>

class QNetworkAccessManager;
class QObject;

namespace velmora
{

/// What ends a transfer early.
struct FetchLimits {
    std::chrono::milliseconds silence{8000}; ///< the longest time without a byte
    std::chrono::milliseconds total{30000};  ///< from the request to the last byte, redirects included
    qint64 largestBody = 1024 * 1024;        ///< bytes
};

/// GETs `address` and returns at once; `done` is called later from the event loop with the body, unless `context` is
/// gone by then. Nothing is handed over when a limit was passed, and an empty body when nothing could be received. The
/// status of the answer is not looked at, nor whether the answer was cut short: the body of an error page is a body.
/// Redirects are followed, but never from https to http. `manager` must outlive the transfer.
void fetch(QNetworkAccessManager& manager, const QUrl& address, const QSslConfiguration& tls, const FetchLimits& limits,
           QObject* context, std::function<void(const std::optional<QByteArray>& body)> done);

} // namespace velmora
