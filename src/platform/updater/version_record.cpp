#include "platform/updater/version_record.h"

#include "platform/updater/signature.h"
#include "platform/updater/update_log.h"

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QUrl>

#include <memory>

namespace tally::platform::Updater {
namespace {

constexpr qint64 largest_record = 64 << 10;

constexpr QLatin1StringView version_key{"version"};

QByteArray signed_text(const QJsonObject &record, const UpdateFile &file)
{
    return QStringLiteral("%1\n%2\n%3\n")
        .arg(record_text(record, version_key), file.url, file.sha256)
        .toUtf8();
}

qint64 size_in(const QJsonObject &record)
{
    constexpr double most = 1LL << 53;
    const double size = record.value(QLatin1StringView("size")).toDouble();
    return size >= 1 && size <= most ? static_cast<qint64>(size) : 0;
}

QByteArray body_of(QNetworkReply &reply, const FetchOptions &options)
{
    QObject::connect(&reply, &QNetworkReply::readyRead, &reply, [&reply] {
        if (reply.bytesAvailable() > largest_record)
            reply.abort();
    });
    wait_for(reply, options.time_limit, options.stop);
    return is_complete(reply) ? reply.readAll() : QByteArray();
}

} // namespace

bool UpdateFile::has_usable_hash() const
{
    static const QRegularExpression hash(QStringLiteral("\\A[0-9A-Fa-f]{64}\\z"));
    return sha256.isEmpty() || hash.match(sha256).hasMatch();
}

bool is_version_name(const QString &text)
{
    static const QRegularExpression name(QStringLiteral("\\A[A-Za-z0-9._-]{1,64}\\z"));
    return name.match(text).hasMatch();
}

bool is_https(const QString &url)
{
    const QUrl parsed(url, QUrl::StrictMode);
    return parsed.isValid() && parsed.scheme() == u"https" && !parsed.host().isEmpty();
}

bool is_newer(const QString &a, const QString &b)
{
    return !a.isEmpty() && !b.isEmpty() && a > b;
}

QString record_text(const QJsonObject &record, QLatin1StringView key)
{
    const QJsonValue value = record.value(key);
    if (value.isUndefined() || value.isNull())
        return {};
    return value.isString() ? value.toString() : QStringLiteral("?");
}

UpdateFile update_file(const QJsonObject &record)
{
    const auto text = [&](const char *key) {
        return record_text(record, QLatin1StringView(key));
    };
    if (const QString payload = text("payload_url"); !payload.isEmpty())
        return {UpdateForm::Payload, payload, text("payload_sha256"), size_in(record)};
    return {UpdateForm::Executable, text("download_url"), text("sha256"), size_in(record)};
}

std::optional<QString> record_fault(const QJsonObject &record, const QByteArray &public_key)
{
    if (!is_version_name(record_text(record, version_key)))
        return QStringLiteral("its version is none");
    const UpdateFile file = update_file(record);
    if (!file.url.isEmpty() && !is_https(file.url))
        return QStringLiteral("its address is none of https");
    if (public_key.isEmpty())
        return std::nullopt;
    if (file.sha256.isEmpty())
        return QStringLiteral("it has no hash");
    const QByteArray signature = record_text(record, QLatin1StringView("signature")).toUtf8();
    if (!is_signed(signed_text(record, file), signature, public_key))
        return QStringLiteral("it is not signed with the key of this build");
    return std::nullopt;
}

std::optional<QJsonObject> fetch_version_info(const Endpoint &endpoint, const FetchOptions &options)
{
    const QUrl url(QStringLiteral("https://%1/api/version/cpp").arg(endpoint.update_host));
    QNetworkAccessManager network;
    const std::unique_ptr<QNetworkReply> reply(network.get(update_request(url, endpoint)));
    const QByteArray body = body_of(*reply, options);
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isObject()) {
        qCWarning(log_update).noquote()
            << "no version record from" << endpoint.update_host << ":"
            << (body.isEmpty() ? reply->errorString() : QStringLiteral("no JSON object"));
        return std::nullopt;
    }
    if (const auto fault = record_fault(document.object(), endpoint.update_key)) {
        qCWarning(log_update).noquote() << "the version record does not count:" << *fault;
        return std::nullopt;
    }
    return document.object();
}

} // namespace tally::platform::Updater
