#pragma once

#include "support/reference_site.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>

namespace tally::test {

inline QByteArray sha256_of(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

/// A server of updates.
class UpdateSite : public ReferenceSite {
public:
    platform::Endpoint endpoint() const
    {
        platform::Endpoint endpoint = ReferenceSite::endpoint();
        endpoint.update_host = QStringLiteral("localhost:%1").arg(endpoint.port);
        return endpoint;
    }

    /// An endpoint that takes signed records only.
    platform::Endpoint strict_endpoint() const
    {
        platform::Endpoint strict = endpoint();
        strict.update_key =
            platform::read_file(server_keys + QStringLiteral("/update-key.txt")).trimmed();
        return strict;
    }

    QString url(const QString &name) const
    {
        return QStringLiteral("https://%1/updates/%2").arg(endpoint().update_host, name);
    }

    void put_file(const QString &name, const QByteArray &content) const
    {
        put(QStringLiteral("updates/") + name, content);
    }

    void put_record(const QJsonObject &record) const
    {
        put(QStringLiteral("version.json"), QJsonDocument(record).toJson());
    }

    /// Offers a payload. \return its record.
    QJsonObject offer(const QString &version, const QByteArray &payload) const
    {
        const QString name = QStringLiteral("payload.zip");
        put_file(name, payload);
        const QJsonObject record = {
            {QStringLiteral("version"), version},
            {QStringLiteral("payload_url"), url(name)},
            {QStringLiteral("payload_sha256"), QString::fromLatin1(sha256_of(payload))},
            {QStringLiteral("size"), payload.size()},
        };
        put_record(record);
        return record;
    }
};

} // namespace tally::test
