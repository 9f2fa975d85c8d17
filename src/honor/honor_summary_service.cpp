#include "honor/honor_summary_service.h"

#include "data/store/tally_db.h"

#include <QMutexLocker>
#include <QTimer>

#include <algorithm>
#include <exception>
#include <utility>

namespace tally::honor {
namespace {

constexpr int sync_interval_ms = 60'000;
constexpr int longest_wait_ms = 3'000;
constexpr qsizetype longest_shown_failure = 80;
constexpr int enemies_needed = 2;

} // namespace

HonorSummaryService::HonorSummaryService(data::TallyDb &db, queries::StoreQueries &queries,
                                         std::shared_ptr<RollReader> reader, platform::Clock clock,
                                         QObject *parent)
    : QObject(parent), db_(db), reader_(std::move(reader)), clock_(std::move(clock)),
      sync_timer_(new QTimer(this)), people_asker_(queries), reading_asker_(queries),
      delta_asker_(queries)
{
    qRegisterMetaType<SyncWorker::Result>();
    sync_timer_->setInterval(sync_interval_ms);
    connect(sync_timer_, &QTimer::timeout, this, &HonorSummaryService::trigger_sync);
}

HonorSummaryService::~HonorSummaryService()
{
    stop();
    if (worker_ == nullptr)
        return;
    // It ends in its own time, with its share of the reader.
    worker_->setParent(nullptr);
    worker_->disconnect(this);
    connect(worker_, &QThread::finished, worker_, &QObject::deleteLater);
}

bool HonorSummaryService::cycling() const
{
    return sync_timer_->isActive();
}

void HonorSummaryService::request_end()
{
    ending_ = true;
    sync_timer_->stop();
    finding_people_ = false;
    if (worker_)
        worker_->request_stop();
}

bool HonorSummaryService::wait_until(QDeadlineTimer deadline)
{
    return worker_ == nullptr || worker_->wait(deadline);
}

void HonorSummaryService::start()
{
    sync_timer_->stop();
    find_people([this](const People &people) { begin_cycle(people); });
}

void HonorSummaryService::stop()
{
    sync_timer_->stop();
    finding_people_ = false;
    if (worker_) {
        worker_->request_stop();
        if (!worker_->wait(QDeadlineTimer(longest_wait_ms)))
            return; // the worker detaches the reader when its read has ended
        on_worker_finished();
    }
    reader_->detach();
}

HonorSummaryService::People HonorSummaryService::people_in(const data::TallyDb &db)
{
    People people;
    try {
        const auto players = db.players();
        const auto named = std::ranges::find_if(
            players, [](const data::PlayerRow &row) { return !row.name.isEmpty(); });
        if (named == players.end())
            return people;
        people.player = named->name;
        for (const data::EnemyCount &enemy : db.top_enemies(enemies_needed))
            people.enemies << enemy.name;
    } catch (const std::exception &) {
        // Logged by the store. Counts as no result.
    }
    return people;
}

void HonorSummaryService::find_people(std::function<void(const People &)> found)
{
    if (ending_)
        return;
    finding_people_ = true;
    people_asker_.ask(
        [](const data::TallyDb &db, const queries::IsOutdated &) { return people_in(db); },
        [this, found = std::move(found)](const People &people) {
            if (std::exchange(finding_people_, false))
                found(people);
        });
}

void HonorSummaryService::begin_cycle(const People &people)
{
    if (people.player.isEmpty()) {
        Q_EMIT stateChanged(QStringLiteral("No imported reports - cannot detect player"));
        return;
    }
    {
        const QMutexLocker lock(&mutex_);
        known_.player_name = people.player;
    }
    if (people.enemies.size() < enemies_needed) {
        Q_EMIT stateChanged(
            QStringLiteral("Honor Tracker needs field reports for at least 2 distinct enemies to "
                           "auto-derive scan markers. Import more reports."));
        return;
    }
    markers_ = {people.player, people.enemies[0], people.enemies[1]};
    sync_timer_->start();
    trigger_sync();
}

void HonorSummaryService::trigger_sync()
{
    if (ending_ || finding_people_)
        return; // a start that looks for people reads as soon as it has them
    QString player;
    {
        const QMutexLocker lock(&mutex_);
        if (known_.running)
            return;
        player = known_.player_name;
    }
    if (!player.isEmpty())
        return begin_reading(player);
    find_people([this](const People &people) {
        if (people.player.isEmpty()) {
            Q_EMIT stateChanged(QStringLiteral("No imported reports"));
            return;
        }
        {
            const QMutexLocker lock(&mutex_);
            known_.player_name = people.player;
        }
        begin_reading(people.player);
    });
}

void HonorSummaryService::begin_reading(const QString &player)
{
    {
        const QMutexLocker lock(&mutex_);
        if (std::exchange(known_.running, true))
            return;
    }
    Q_EMIT syncStarted();
    Q_EMIT stateChanged(QStringLiteral("Reading for %1...").arg(player));
    worker_ = new SyncWorker(reader_, player, markers_, this);
    connect(worker_, &SyncWorker::resultReady, this, &HonorSummaryService::on_worker_result);
    connect(worker_, &SyncWorker::errorOccurred, this, &HonorSummaryService::on_worker_error);
    connect(worker_, &QThread::finished, this, &HonorSummaryService::on_worker_finished);
    worker_->start(QThread::LowestPriority);
}

void HonorSummaryService::on_worker_error(const QString &msg)
{
    Q_EMIT syncFailed(msg);
    Q_EMIT stateChanged(QStringLiteral("Error: %1").arg(msg.left(longest_shown_failure)));
}

void HonorSummaryService::on_worker_finished()
{
    // A worker that `stop` has waited for is gone when its own word of that comes.
    if (worker_ == nullptr || !worker_->isFinished())
        return;
    {
        const QMutexLocker lock(&mutex_);
        known_.running = false;
    }
    worker_->deleteLater();
    worker_ = nullptr;
}

void HonorSummaryService::on_worker_result(const SyncWorker::Result &payload)
{
    if (payload.state == ReaderState::NeedsAdmin) {
        Q_EMIT adminRequired();
        Q_EMIT stateChanged(QStringLiteral("Requires administrator privileges"));
    } else if (payload.state == ReaderState::GameNotFound) {
        Q_EMIT gameNotFound();
        Q_EMIT stateChanged(QStringLiteral("Game not running"));
    } else if (!payload.read) {
        Q_EMIT stateChanged(QStringLiteral("No data - open Honor Roll in game"));
    } else {
        take_up(*payload.read);
    }
}

void HonorSummaryService::take_up(const ReadResult &read)
{
    HonorBase old;
    QString player;
    {
        const QMutexLocker lock(&mutex_);
        old = {known_.base_honor, known_.base_ts};
        known_.leaderboard = read.entries;
        known_.rank = read.own_rank;
        known_.kingdom = read.own_kingdom;
        player = known_.player_name;
    }
    if (!read.own_honor) {
        Q_EMIT stateChanged(QStringLiteral("%1 not found in cache").arg(player));
        return;
    }
    const HonorReading reading{*read.own_honor, time_of_reading(read, clock_())};
    count({old.since.value_or(reading.time), reading.time},
          [this, old, reading, read](const std::vector<int> &earned) {
              settle(read, reconcile(old, reading, {earned[0], earned[1]}));
          });
}

void HonorSummaryService::settle(const ReadResult &read, const Reconciliation &result)
{
    if (result.comparison) {
        log(*result.comparison);
        Q_EMIT reconciled(result.comparison->discrepancy);
    }
    QString player;
    {
        const QMutexLocker lock(&mutex_);
        known_.base_honor = result.base.honor;
        known_.base_ts = result.base.since;
        known_.delta_reports = result.delta_reports;
        player = known_.player_name;
    }
    Q_EMIT honorUpdated(result.base.honor, result.delta_reports, result.estimated,
                        result.base.since, read.entries, read.own_rank, read.own_kingdom, player);
    Q_EMIT stateChanged(read_ok_text(read.elapsed, result.fresh));
}

void HonorSummaryService::log(const HonorComparison &comparison)
{
    try {
        db_.log_honor_summary(comparison.base_timestamp, comparison.base_honor,
                              comparison.new_timestamp, comparison.new_honor,
                              comparison.delta_reports, comparison.expected,
                              comparison.discrepancy);
    } catch (const std::exception &) {
        // Logged by the store. Only a row of the history is lost.
    }
}

std::optional<int> HonorSummaryService::counted_now(double since) const
{
    try {
        return db_.stale_chain_count() == 0 ? std::optional(db_.honor_since(since)) : std::nullopt;
    } catch (const std::exception &) {
        return std::nullopt; // logged by the store
    }
}

void HonorSummaryService::count(const std::vector<double> &moments,
                                std::function<void(const std::vector<int> &)> counted)
{
    std::vector<int> sums;
    for (const double since : moments) {
        if (const auto sum = counted_now(since))
            sums.push_back(*sum);
    }
    if (sums.size() == moments.size())
        return counted(sums);
    reading_asker_.ask(
        [moments](const data::TallyDb &db, const queries::IsOutdated &) {
            std::vector<int> later;
            std::ranges::transform(moments, std::back_inserter(later),
                                   [&db](double since) { return db.honor_since(since); });
            return later;
        },
        std::move(counted), [this](const QString &failure) { on_worker_error(failure); });
}

void HonorSummaryService::recount(double since)
{
    if (ending_ || delta_asker_.busy())
        return;
    delta_asker_.ask([since](const data::TallyDb &db,
                             const queries::IsOutdated &) { return db.honor_since(since); },
                     [this, since](int delta) { keep_delta(since, delta); });
}

void HonorSummaryService::keep_delta(double since, int delta)
{
    const QMutexLocker lock(&mutex_);
    if (known_.base_ts == since)
        known_.delta_reports = delta;
}

HonorSnapshot HonorSummaryService::snapshot()
{
    HonorSnapshot now;
    {
        const QMutexLocker lock(&mutex_);
        now = known_;
    }
    if (!now.base_honor || !now.base_ts)
        return now;
    const double since = *now.base_ts;
    if (const auto delta = counted_now(since)) {
        now.delta_reports = *delta;
        keep_delta(since, *delta);
    } else {
        QMetaObject::invokeMethod(this, [this, since] { recount(since); });
    }
    now.estimated = *now.base_honor + now.delta_reports;
    return now;
}

std::vector<OvertakeRow> HonorSummaryService::overtake_targets(int count)
{
    return honor::overtake_targets(snapshot(), count);
}

} // namespace tally::honor
