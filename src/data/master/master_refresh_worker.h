#pragma once

#include "data/master/master_download.h"
#include "platform/endpoint/endpoint.h"

#include <QObject>
#include <QString>

namespace tally::data {

/// Fills `MasterCache` and the icon cache from the server. Lives in a thread of its own, whose
/// event loop must run; `run` blocks that thread until it is done. To stop it early:
/// `requestInterruption()` and `quit()` of its thread. It then gives up what it is fetching and
/// reports what it has.
class MasterRefreshWorker : public QObject {
    Q_OBJECT

public:
    MasterRefreshWorker(platform::Endpoint endpoint, QString icon_cache_dir,
                        DownloadTimeouts timeouts = {});

Q_SIGNALS:
    void statusMessage(QString msg);
    /// Emitted exactly once a run, as its last act. \param success whether any table has arrived.
    void masterRefreshDone(bool success);

public Q_SLOTS:
    void run();

private:
    bool refresh_tables();
    void refresh_icons();

    MasterDownload download_;
    DownloadTimeouts timeouts_;
    QString icon_cache_dir_;
};

} // namespace tally::data
