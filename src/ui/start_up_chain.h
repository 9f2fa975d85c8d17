#pragma once

#include "ui/parts/surroundings.h"
#include "ui/window_setup.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QPointer>
#include <QThread>

#include <atomic>
#include <memory>

class QWidget;

namespace tally::data {
class TallyWatcher;
}

namespace tally::ui {

class LoadingSplash;

/// What the window does behind the user's back, each link started by the end of the one before:
/// refresh of the reference data behind a splash, first import of the mail folder, watching it.
class StartUpChain : public QObject {
    Q_OBJECT

public:
    /// \param window what the splash covers; outlives the chain
    StartUpChain(const Surroundings &around, const WindowSetup &setup, QWidget *window);
    /// All threads must have ended.
    ~StartUpChain() override;

    static constexpr int refresh_failed_ms = 8'000;
    static QString refresh_failed_text();

    /// Does nothing while the refresh of an earlier run is still at work.
    void run();
    /// Refreshes the reference data once more, and nothing else.
    void refresh_again();

    /// Lets a worker refresh the reference data on a thread of its own. It has the slot `run` and
    /// the signals `statusMessage(QString)` and `masterRefreshDone(bool)`, of which the last ends
    /// it. The chain takes it over; none may be at work.
    template <typename Worker>
    void start_refresh(Worker *worker)
    {
        Q_ASSERT(!refresh_thread_ || !refresh_thread_->isRunning());
        refresh_thread_ = new_thread(worker);
        connect(refresh_thread_, &QThread::started, worker, &Worker::run);
        connect(worker, &Worker::statusMessage, this, &StartUpChain::on_refresh_status,
                Qt::QueuedConnection);
        connect(worker, &Worker::masterRefreshDone, this, &StartUpChain::on_master_refresh_done,
                Qt::QueuedConnection);
        connect(worker, &Worker::masterRefreshDone, worker, &QObject::deleteLater);
        connect(worker, &Worker::masterRefreshDone, refresh_thread_, &QThread::quit);
        refresh_thread_->start(QThread::InheritPriority);
    }

    void start_bootstrap_and_watcher();

    /// Waits for the file that the watcher has in hand.
    void stop_watcher();

    /// Asks all threads to end; does not wait. No other starts from then on.
    void request_end();
    /// \return whether all threads have ended in time.
    bool wait_until(QDeadlineTimer deadline);

    bool watching() const;
    bool importing() const; ///< the mail folder, for the first time

Q_SIGNALS:
    void message(const QString &text, int ms); ///< for the status bar
    void refreshEnded(bool success);           ///< of the reference data, each time
    void refreshDone(bool success);            ///< the first import has been started
    void referenceDataChanged();               ///< names and icons may now be others
    void shownDataChanged();                   ///< what tabs show may be out of date

private:
    void on_refresh_status(const QString &text);
    void on_master_refresh_done(bool success);
    void on_bootstrap_done(int scanned, int imported, int errors);
    void on_new_reports(int count);
    void show_splash();
    QThread *new_thread(QObject *worker);
    QList<QThread *> threads() const;
    QString mailcache_dir();

    Surroundings around_;
    WindowSetup setup_;
    QWidget *window_;
    QPointer<LoadingSplash> splash_;
    QPointer<QThread> refresh_thread_;
    QPointer<QThread> bootstrap_thread_;
    std::unique_ptr<data::TallyWatcher> watcher_;
    QString bootstrap_trouble_;   ///< of the first import, for the user
    bool refreshes_only_ = false; ///< nothing is to follow the refresh that runs
    std::atomic<bool> ending_ = false;
};

} // namespace tally::ui
