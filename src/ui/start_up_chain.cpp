#include "ui/start_up_chain.h"

#include "data/import/import_trouble.h"
#include "data/import/tally_watcher.h"
#include "data/master/master_refresh_worker.h"
#include "data/store/tally_db.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/bootstrap_import_worker.h"
#include "ui/loading_splash.h"
#include "ui/parts/ui_log.h"

#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tally::ui {
namespace {

bool runs(const QThread *thread)
{
    return thread && thread->isRunning();
}

} // namespace

StartUpChain::StartUpChain(const Surroundings &around, const WindowSetup &setup, QWidget *window)
    : around_(around), setup_(setup), window_(window)
{
    if (!setup_.refresh) {
        setup_.refresh = [this](StartUpChain &chain) {
            chain.start_refresh(new data::MasterRefreshWorker(around_.endpoint, around_.icon_dir));
        };
    }
}

StartUpChain::~StartUpChain() = default;

void StartUpChain::run()
{
    if (runs(refresh_thread_)) {
        qCWarning(log_ui) << "run_post_startup: already running, skipping";
        return;
    }
    if (ending_)
        return;
    show_splash();
    setup_.refresh(*this);
}

void StartUpChain::refresh_again()
{
    if (ending_ || runs(refresh_thread_))
        return;
    refreshes_only_ = true;
    setup_.refresh(*this);
}

QString StartUpChain::refresh_failed_text()
{
    return QStringLiteral("Master refresh failed — tabs will show raw IDs.");
}

void StartUpChain::show_splash()
{
    splash_ = new LoadingSplash(window_, QStringLiteral("Loading data from server..."),
                                setup_.splash_minimum);
    splash_->show();
    QTimer::singleShot(setup_.splash_limit, splash_, [splash = splash_.data()] {
        qCWarning(log_ui) << "run_post_startup: SPLASH TIMEOUT (30s)";
        splash->finish();
    });
}

void StartUpChain::on_refresh_status(const QString &text)
{
    if (splash_)
        splash_->set_status(text);
    Q_EMIT message(text, 4'000);
}

void StartUpChain::on_master_refresh_done(bool success)
{
    if (splash_)
        splash_->finish();
    Q_EMIT referenceDataChanged(); // a failed refresh may have brought a part of it
    if (success)
        Q_EMIT shownDataChanged();
    else
        Q_EMIT message(refresh_failed_text(), refresh_failed_ms);
    Q_EMIT refreshEnded(success);
    if (std::exchange(refreshes_only_, false))
        return;
    start_bootstrap_and_watcher();
    Q_EMIT refreshDone(success);
}

QString StartUpChain::mailcache_dir()
{
    QString dir = around_.settings.get(settings::mailcache_dir);
    if (dir.isEmpty()) {
        dir = platform::default_mailcache_dir();
        if (!dir.isEmpty())
            around_.settings.set(settings::mailcache_dir, dir);
    }
    return dir;
}

void StartUpChain::start_bootstrap_and_watcher()
{
    if (ending_)
        return;
    const QString dir = mailcache_dir();
    if (dir.isEmpty() || !QFileInfo(dir).isDir()) {
        Q_EMIT message(
            QStringLiteral("Mailcache folder not found: %1 (File → Settings to change)").arg(dir),
            10'000);
        return;
    }
    if (runs(bootstrap_thread_)) {
        qCWarning(log_ui) << "start_bootstrap_and_watcher: import already running";
        return;
    }
    QDir().mkpath(around_.raw_dir);

    using Worker = BootstrapImportWorker;
    auto *worker = new Worker(dir, around_.raw_dir, &around_.db, &ending_);
    bootstrap_thread_ = new_thread(worker);
    connect(bootstrap_thread_, &QThread::started, worker, &Worker::run);
    connect(
        worker, &Worker::statusMessage, this,
        [this](const QString &text) { Q_EMIT message(text, 4'000); }, Qt::QueuedConnection);
    bootstrap_trouble_.clear();
    connect(
        worker, &Worker::incomplete, this,
        [this](const QString &trouble) { bootstrap_trouble_ = trouble; }, Qt::QueuedConnection);
    connect(worker, &Worker::bootstrapDone, this, &StartUpChain::on_bootstrap_done,
            Qt::QueuedConnection);
    connect(worker, &Worker::bootstrapDone, worker, &QObject::deleteLater);
    connect(worker, &Worker::bootstrapDone, bootstrap_thread_, &QThread::quit);
    bootstrap_thread_->start(QThread::InheritPriority);
}

void StartUpChain::on_bootstrap_done(int scanned, int imported, int errors)
{
    const auto done =
        QStringLiteral("Bootstrap done: scanned=%1  imported=%2  errors=%3. Monitoring active.")
            .arg(scanned)
            .arg(imported)
            .arg(errors);
    Q_EMIT message(data::with_trouble(done, bootstrap_trouble_), 8'000);
    Q_EMIT shownDataChanged();
    stop_watcher();
    const QString dir = around_.settings.get(settings::mailcache_dir);
    if (dir.isEmpty() || watcher_ || ending_)
        return;
    using data::TallyWatcher;
    watcher_ = std::make_unique<TallyWatcher>(&around_.db, dir, around_.raw_dir,
                                              static_cast<int>(setup_.poll_interval.count()), this);
    connect(watcher_.get(), &TallyWatcher::newFilesImported, this, &StartUpChain::on_new_reports,
            Qt::QueuedConnection);
    connect(
        watcher_.get(), &TallyWatcher::errorOccurred, this,
        [this](const QString &text) {
            Q_EMIT message(QStringLiteral("Watcher: %1").arg(text), 6'000);
        },
        Qt::QueuedConnection);
    connect(
        watcher_.get(), &TallyWatcher::mailsNotStored, this,
        [this](const QString &text) { Q_EMIT message(text, 30'000); }, Qt::QueuedConnection);
    watcher_->start(QThread::InheritPriority);
}

void StartUpChain::on_new_reports(int count)
{
    Q_EMIT message(QStringLiteral("%1 new report(s) imported.").arg(count), 4'000);
    Q_EMIT shownDataChanged();
}

QThread *StartUpChain::new_thread(QObject *worker)
{
    auto *thread = new QThread(this);
    worker->moveToThread(thread);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    return thread;
}

void StartUpChain::stop_watcher()
{
    // A thread must not be destroyed while it runs: one that hangs in a file stays, and
    // `wait_until` tells.
    if (watcher_ && watcher_->stop_and_wait())
        watcher_.reset();
}

QList<QThread *> StartUpChain::threads() const
{
    return findChildren<QThread *>(Qt::FindDirectChildrenOnly);
}

void StartUpChain::request_end()
{
    ending_ = true;
    if (watcher_)
        watcher_->request_stop();
    for (QThread *thread : threads()) {
        thread->requestInterruption();
        thread->quit();
    }
}

bool StartUpChain::wait_until(QDeadlineTimer deadline)
{
    const QList<QThread *> all = threads();
    return std::all_of(all.begin(), all.end(),
                       [deadline](QThread *thread) { return thread->wait(deadline); });
}

bool StartUpChain::importing() const
{
    return runs(bootstrap_thread_);
}

bool StartUpChain::watching() const
{
    return runs(watcher_.get());
}

} // namespace tally::ui
