#pragma once

#include "honor/honor_reconciliation.h"
#include "honor/honor_snapshot.h"
#include "honor/sync_worker.h"
#include "platform/clock/clock.h"
#include "queries/asker.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QTimer;

namespace tally::honor {

/// Keeps the player's honor current between two readings of the game: it adds what imported reports
/// have earned since, and holds each new reading against what was expected. Lives on the GUI
/// thread, which it never blocks: the game is read by a `SyncWorker`, and what takes long in the
/// store is asked of the thread that answers the views.
class HonorSummaryService : public QObject {
    Q_OBJECT

public:
    /// \param db outlives the service, as do \p queries
    HonorSummaryService(data::TallyDb &db, queries::StoreQueries &queries,
                        std::shared_ptr<RollReader> reader,
                        platform::Clock clock = platform::system_time, QObject *parent = nullptr);
    /// Waits for a reading as `stop` does.
    ~HonorSummaryService() override;

    /// Finds the player and two enemies whose names lead to the roll, and begins to read every
    /// minute.
    void start();
    /// Ends the cycle and the reading that runs, for which it waits 3 seconds at most.
    void stop();
    /// Whether readings go on by themselves.
    bool cycling() const;

    /// Without waiting: nothing is read from now on.
    void request_end();
    /// \return whether the reading that ran has ended in time. `request_end` must have come before.
    bool wait_until(QDeadlineTimer deadline);

    /// With the reports that are imported by now. On any thread.
    HonorSnapshot snapshot();
    std::vector<OvertakeRow> overtake_targets(int count);

public Q_SLOTS:
    /// Reads once, unless a reading is under way.
    void trigger_sync();

Q_SIGNALS:
    /// A reading succeeded. Everything of it is of this moment.
    void honorUpdated(std::optional<qint64> base_honor, int delta_reports,
                      std::optional<qint64> estimated, std::optional<double> base_ts,
                      std::vector<tally::honor::LeaderboardEntry> leaderboard,
                      std::optional<int> rank, std::optional<int> kingdom, QString player_name);
    void syncStarted();
    void syncFailed(QString msg);
    /// A new value was held against the expected one: positive if reports are missing.
    void reconciled(int discrepancy);
    void stateChanged(QString msg); ///< what goes on, for the user
    void adminRequired();
    void gameNotFound();

private Q_SLOTS:
    void on_worker_result(const tally::honor::SyncWorker::Result &payload);
    void on_worker_error(const QString &msg);
    void on_worker_finished();

private:
    struct People {
        QString player;      ///< empty if no report tells of one
        QStringList enemies; ///< the most frequent first, two at most
    };
    static People people_in(const data::TallyDb &db);

    /// Looks for the people of the reports, and hands them over unless it was stopped meanwhile.
    void find_people(std::function<void(const People &)> found);
    void begin_cycle(const People &people);
    void begin_reading(const QString &player);
    void take_up(const ReadResult &read);
    void settle(const ReadResult &read, const Reconciliation &result);
    void log(const HonorComparison &comparison);

    /// Honor since the moment; nothing while the store has chains to add up first, or fails.
    std::optional<int> counted_now(double since) const;
    /// Hands over the honor since each of the moments, at once where that takes no time.
    void count(const std::vector<double> &moments,
               std::function<void(const std::vector<int> &)> counted);
    void recount(double since);
    void keep_delta(double since, int delta);

    data::TallyDb &db_;
    // Shared with the worker, which may go on for a while after the service.
    std::shared_ptr<RollReader> reader_;
    platform::Clock clock_;
    QTimer *sync_timer_;
    SyncWorker *worker_ = nullptr;
    std::optional<SyncWorker::Names> markers_;
    bool finding_people_ = false;
    bool ending_ = false;

    mutable QMutex mutex_;
    HonorSnapshot known_; ///< under the mutex; without an estimate, with the last delta counted

    queries::Asker people_asker_;
    queries::Asker reading_asker_; ///< for what a reading is held against
    queries::Asker delta_asker_;   ///< for snapshots
};

} // namespace tally::honor
