#include "ui/settings/folder_probe.h"

#include <QFileInfo>
#include <QPromise>
#include <QSemaphore>
#include <QThreadPool>

#include <memory>
#include <utility>

namespace tally::ui {
namespace {

constexpr int patience_ms = 10;

} // namespace

bool is_folder(const QString &path)
{
    return QFileInfo(path).isDir();
}

FolderProbe::FolderProbe(QObject *parent, std::function<bool(const QString &)> is_there)
    : QObject(parent), is_there_(std::move(is_there))
{
    connect(&watcher_, &QFutureWatcher<bool>::finished, this, [this] { tell(watcher_.result()); });
}

void FolderProbe::look(const QString &folder)
{
    wanted_ = folder;
    if (!looking_)
        begin();
}

void FolderProbe::begin()
{
    looking_ = true;
    looking_for_ = wanted_;
    const auto answer = std::make_shared<QPromise<bool>>();
    const auto done = std::make_shared<QSemaphore>();
    answer->start();
    QFuture<bool> future = answer->future();
    QThreadPool::globalInstance()->start([=, folder = looking_for_, is_there = is_there_] {
        answer->addResult(is_there(folder));
        answer->finish();
        done->release();
    });
    if (done->tryAcquire(1, patience_ms))
        tell(future.result());
    else
        watcher_.setFuture(future);
}

void FolderProbe::tell(bool is_there)
{
    looking_ = false;
    if (looking_for_ != wanted_)
        return begin();
    Q_EMIT looked(is_there);
}

} // namespace tally::ui
