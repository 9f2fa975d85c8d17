#pragma once

#include "platform/updater/download.h"

#include <QObject>

#include <memory>

namespace tally::ui {

/// What is to be downloaded, and what it may become.
struct DownloadOrder {
    QString url;
    QString dest_path;
    QString sha256; ///< in hex; empty: any will do
    qint64 size_limit = platform::Updater::largest_download;
    platform::Endpoint endpoint;
};

/// Downloads one file and reads it once more, on a thread of its own, which `run` blocks. To end it
/// early, set the flag; the end is then a failure.
class DownloadWorker : public QObject {
    Q_OBJECT

public:
    using StopFlag = platform::Updater::StopFlag;

    DownloadWorker(DownloadOrder order, std::shared_ptr<const StopFlag> stop);

Q_SIGNALS:
    /// Some times a second, and at the end.
    void progress(qlonglong done, qlonglong total);
    void finished(bool ok, QString error);

public Q_SLOTS:
    void run();

private:
    platform::Updater::DownloadResult download();

    DownloadOrder order_;
    std::shared_ptr<const StopFlag> stop_;
};

} // namespace tally::ui
