#pragma once

#include "platform/endpoint/endpoint.h"

#include <QByteArray>
#include <QMap>
#include <QString>

namespace tally::data {

struct HttpRequest {
    QString method = QStringLiteral("GET"); ///< or "POST"
    QString path;                           ///< decoded
    QByteArray body;
    QMap<QString, QString> headers;
    int timeout_ms = 10000;
    qint64 size_limit = 16 << 20; ///< of the answer's body, in bytes
};

struct HttpResult {
    int status = 0;  ///< 0 when no answer came, or not the whole of it
    QByteArray body; ///< empty unless the answer came without an error
    /// Empty on success; else "cert_pin_mismatch" (also for a connection that never stood),
    /// "unsupported_method", "body_too_large" or "network: " and the reason.
    QString error;
    QString detail; ///< of an error, for the log: what "cert_pin_mismatch" hides
};

/// Talks to one host over HTTPS. Beside the usual proof of identity the host must present a public
/// key of the endpoint's list, and it cannot send the client on to another host. Bodies are
/// bounded; the header of an answer is not, for Qt tells of it only when all of it has come: the
/// time-out ends that, and only a server with our key gets so far.
class HttpsClient {
public:
    explicit HttpsClient(platform::Endpoint endpoint);

    /// Blocks the calling thread, whose events go on being served, until the answer has come, the
    /// time is over, or the thread's event loop was told to quit.
    HttpResult http_request(const HttpRequest &request) const;

private:
    platform::Endpoint endpoint_;
};

} // namespace tally::data
