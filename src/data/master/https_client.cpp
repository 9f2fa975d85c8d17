#include "data/master/https_client.h"

#include "data/master/key_pin.h"
#include "platform/net/tls.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTimer>
#include <QUrl>

#include <memory>

namespace tally::data {
namespace {

constexpr int first_error_status = 300;

QNetworkRequest network_request(const platform::Endpoint &endpoint, const HttpRequest &request)
{
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setHost(endpoint.host);
    url.setPort(endpoint.port);
    url.setPath(request.path, QUrl::DecodedMode);

    QNetworkRequest result(url);
    result.setSslConfiguration(platform::tls_of(endpoint));
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::SameOriginRedirectPolicy);
    result.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Tallyhand-Client/1.0"));
    result.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    for (auto header = request.headers.begin(); header != request.headers.end(); ++header)
        result.setRawHeader(header.key().toUtf8(), header.value().toUtf8());
    return result;
}

/// What has become of one reply while the event loop runs.
struct Exchange {
    bool has_met_server = false;
    bool is_pinned = false;
    bool is_late = false;
    bool is_too_large = false;
    QByteArray body;
};

void check_pin(Exchange &exchange, QNetworkReply &reply, const QByteArrayList &pins)
{
    const QList<QSslCertificate> chain = reply.sslConfiguration().peerCertificateChain();
    exchange.has_met_server = true;
    exchange.is_pinned =
        !chain.isEmpty() && pins.contains(public_key_pin(chain.constFirst().toDer()));
    // Nothing has been sent yet: a stranger learns not even the path.
    if (!exchange.is_pinned)
        reply.abort();
}

void take_body(Exchange &exchange, QNetworkReply &reply, qint64 size_limit)
{
    exchange.body += reply.readAll();
    exchange.is_too_large = exchange.body.size() > size_limit;
    if (exchange.is_too_large)
        reply.abort();
}

QString detail_of(const Exchange &exchange, const QNetworkReply &reply)
{
    if (exchange.has_met_server && !exchange.is_pinned)
        return QStringLiteral("the server's key is none of the known ones");
    return exchange.is_late ? QStringLiteral("no answer in time") : reply.errorString();
}

HttpResult result_of(const Exchange &exchange, const QNetworkReply &reply)
{
    const QString detail = detail_of(exchange, reply);
    if (!exchange.is_pinned)
        return {0, {}, QStringLiteral("cert_pin_mismatch"), detail};
    if (exchange.is_too_large)
        return {0, {}, QStringLiteral("body_too_large"), {}};

    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply.error() == QNetworkReply::NoError)
        return {status, exchange.body, {}, {}};
    // An answer that broke off bears the status of a good one.
    return {status < first_error_status ? 0 : status,
            {},
            QStringLiteral("network: %1").arg(reply.errorString()),
            detail};
}

} // namespace

HttpsClient::HttpsClient(platform::Endpoint endpoint) : endpoint_(std::move(endpoint)) {}

HttpResult HttpsClient::http_request(const HttpRequest &request) const
{
    const bool is_post = request.method == u"POST";
    if (!is_post && request.method != u"GET")
        return {0, {}, QStringLiteral("unsupported_method"), {}};

    QNetworkAccessManager network;
    const QNetworkRequest prepared = network_request(endpoint_, request);
    QNetworkReply *reply = is_post ? network.post(prepared, request.body) : network.get(prepared);

    Exchange exchange;
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::encrypted, &loop,
                     [&] { check_pin(exchange, *reply, endpoint_.pins); });
    QObject::connect(reply, &QNetworkReply::readyRead, &loop,
                     [&] { take_body(exchange, *reply, request.size_limit); });
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(request.timeout_ms, Qt::PreciseTimer, &loop, [&] {
        exchange.is_late = true;
        reply->abort();
        loop.quit();
    });
    loop.exec();
    // The loop also ends, unfinished, when the thread is told to quit.
    reply->abort();
    return result_of(exchange, *reply);
}

} // namespace tally::data
