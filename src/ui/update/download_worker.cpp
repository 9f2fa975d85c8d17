#include "ui/update/download_worker.h"

#include <QElapsedTimer>

namespace tally::ui {

using namespace platform;

DownloadWorker::DownloadWorker(DownloadOrder order, std::shared_ptr<const StopFlag> stop)
    : order_(std::move(order)), stop_(std::move(stop))
{}

Updater::DownloadResult DownloadWorker::download()
{
    constexpr qint64 between_tellings = 40; // ms: more often nobody sees it
    QElapsedTimer since_told;
    const auto tell = [&](qint64 done, qint64 total) {
        if (since_told.isValid() && since_told.elapsed() < between_tellings && done != total)
            return;
        since_told.start();
        Q_EMIT progress(done, total);
    };
    const Updater::DownloadResult result = Updater::download_file(
        order_.url, order_.dest_path, order_.sha256, tell,
        {.endpoint = order_.endpoint, .size_limit = order_.size_limit, .stop = stop_.get()});
    return result.ok ? Updater::check_file(order_.dest_path, result.sha256, stop_.get()) : result;
}

void DownloadWorker::run()
{
    const Updater::DownloadResult result = download();
    Q_EMIT finished(result.ok, result.error);
}

} // namespace tally::ui
