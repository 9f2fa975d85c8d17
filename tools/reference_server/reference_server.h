#pragma once

#include "fault.h"
#include "pieces.h"

#include <QByteArray>
#include <QList>
#include <QSslServer>
#include <QString>
#include <QStringList>

#include <optional>

namespace tally::reference {

/// Serves a folder of reference data to this machine over HTTPS:
/// /api/master/KIND is master/KIND.json, /api/master/icon/HASH is icon/HASH.webp, /updates/NAME is
/// updates/NAME, and /api/version/cpp is version.json. Runs on the event loop of its thread.
class ReferenceServer {
public:
    /// Presents NAME.pem and NAME.key of the folder `keys`.
    ReferenceServer(QString folder, const QString &keys, const QString &name);

    /// On the loopback interface; the system chooses the port if it is 0.
    bool listen(quint16 port = 0);
    quint16 port() const { return server_.serverPort(); }
    QString error() const { return server_.errorString(); }

    /// The first fault that fits a request happens to it.
    void add_fault(const Fault &fault) { faults_.append(fault); }
    void clear_faults() { faults_.clear(); }

    /// The paths asked for so far.
    const QStringList &requests() const { return requests_; }

private:
    void on_connection();
    void on_request(QTcpSocket &socket, const QString &path);
    Pieces answer_to(const QString &path, const std::optional<Fault> &fault) const;
    std::optional<Fault> fault_of(const QString &path) const;

    QString folder_;
    QList<Fault> faults_;
    QStringList requests_;
    QSslServer server_;
};

} // namespace tally::reference
