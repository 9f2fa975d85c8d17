#pragma once

#include "platform/endpoint/endpoint.h"
#include "platform/files/exact_files.h"
#include "reference_server.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace tally::test {

inline const QString server_keys = QStringLiteral(TALLY_TEST_KEYS);

/// A reference server on a port of the system's choice, with a folder that starts empty, served by
/// the event loop of the thread that made it.
class ReferenceSite {
public:
    explicit ReferenceSite(const QString &key = QStringLiteral("server"))
        : server_(folder_.path(), server_keys, key)
    {
        if (!server_.listen())
            throw std::runtime_error(server_.error().toStdString());
    }

    void put(const QString &name, const QByteArray &content) const
    {
        const QString path = folder_.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            throw std::runtime_error(file.errorString().toStdString());
    }
    void put_table(const QString &kind, const QByteArray &json) const
    {
        put(QStringLiteral("master/%1.json").arg(kind), json);
    }
    void put_icon(const QString &hash, const QByteArray &content) const
    {
        put(QStringLiteral("icon/%1.webp").arg(hash), content);
    }
    void break_with(const QString &fault)
    {
        server_.add_fault(reference::parse_fault(fault).value());
    }

    void mend() { server_.clear_faults(); }

    qsizetype requests_of(const QString &path) const { return server_.requests().count(path); }
    qsizetype icon_requests() const
    {
        return server_.requests().filter(QStringLiteral("/api/master/icon/")).size();
    }

    /// What a program knows of this server: its pin is the one of the key "server".
    platform::Endpoint endpoint() const
    {
        platform::Endpoint endpoint;
        endpoint.host = QStringLiteral("localhost");
        endpoint.port = server_.port();
        endpoint.pins = {platform::read_file(server_keys + QStringLiteral("/pin.txt")).trimmed()};
        endpoint.authority_file = server_keys + QStringLiteral("/authority.pem");
        return endpoint;
    }

private:
    QTemporaryDir folder_;
    reference::ReferenceServer server_;
};

} // namespace tally::test
