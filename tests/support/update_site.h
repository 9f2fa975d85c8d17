#pragma once

#include "support/reference_site.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>

namespace tally::test {

/// A server of updates.
class UpdateSite : public ReferenceSite {
public:
    /// \param signs whether records must be signed
    platform::Endpoint endpoint(bool signs = false) const
    {
        platform::Endpoint endpoint = ReferenceSite::endpoint();
        endpoint.update_host = QStringLiteral("localhost:%1").arg(endpoint.port);
        if (signs)
            endpoint.update_key =
                platform::read_file(server_keys + QStringLiteral("/update-key.txt")).trimmed();
        return endpoint;
    }

    QString url() const
    {
        return QStringLiteral("https://%1/updates/payload.zip").arg(endpoint().update_host);
    }
    void put_payload(const QByteArray &content) const
    {
        put(QStringLiteral("updates/payload.zip"), content);
    }
    void put_record(const QJsonObject &record) const
    {
        put(QStringLiteral("version.json"), QJsonDocument(record).toJson());
    }

    /// \return the record of the offer
    QJsonObject offer(const QString &version, const QByteArray &payload) const
    {
        put_payload(payload);
        const QByteArray hash = QCryptographicHash::hash(payload, QCryptographicHash::Sha256);
        const QJsonObject record = {
            {QStringLiteral("version"), version},
            {QStringLiteral("payload_url"), url()},
            {QStringLiteral("payload_sha256"), QString::fromLatin1(hash.toHex())}};
        put_record(record);
        return record;
    }
};

} // namespace tally::test
