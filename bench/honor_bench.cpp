// What the honor tracker costs on a store of a million rounds: how long its start and its readings
// stop the window's thread, what the honor of a period takes to count, and what it takes pinned to
// a window between two readings. honor_bench [SECONDS]

#include "data/mail/battle_report.h"
#include "data/store/chain_statistics.h"
#include "data/store/tally_db.h"
#include "filled_store.h"
#include "honor/honor_summary_service.h"
#include "idle_cost.h"
#include "page_refresh.h"
#include "platform/host/system_host.h"
#include "settings/catalogue.h"
#include "support/x_session.h"
#include "ui/honor/honor_summary_overlay.h"

#include <QApplication>
#include <QSqlQuery>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

using namespace tally;
using namespace tally::bench;

constexpr int default_seconds = 50; // less than lies between two readings
constexpr int readings = 9;
constexpr int people = 1'000;
constexpr double day = 86'400.0;

/// Tells another honor at each read, as if the game had just refreshed it.
class FreshRoll final : public honor::RollReader {
public:
    double read_at = 0.0; ///< to be set between two reads

    void set_markers(const QString &, const QString &, const QString &) override {}
    std::optional<honor::ReadResult> read_honor_roll(const QString &player_name,
                                                     std::stop_token) override
    {
        honor::ReadResult read;
        read.own_honor = honor_ += 700;
        read.own_rank = people / 2;
        read.started_at = read_at;
        for (int rank = 1; rank <= people; ++rank)
            read.entries.push_back({0,
                                    QStringLiteral("Player %1").arg(rank),
                                    honor_ + 100 * (people / 2 - rank),
                                    rank,
                                    {}});
        read.player_name = player_name;
        return read;
    }
    honor::ReaderState state() const override { return honor::ReaderState::Ok; }
    void detach() override {}

private:
    std::int64_t honor_ = 1'000'000;
};

/// The tracker, busy from a question to it until a reading is shown.
class Tracker {
public:
    Tracker(const ui::Surroundings &around, double end)
        : around_(around), end_(end),
          service_(around.db, around.queries, roll_, [end] { return end; })
    {
        roll_->read_at = end - day;
        QObject::connect(&service_, &honor::HonorSummaryService::stateChanged,
                         [this](const QString &text) {
                             if (text.startsWith(QStringLiteral("Read OK")))
                                 busy_ = false;
                         });
    }

    bool busy() const { return busy_ || service_.snapshot().running; }
    honor::HonorSummaryService &service() { return service_; }
    const std::unique_ptr<honor::HonorSummaryOverlay> &overlay() const { return overlay_; }

    void open()
    {
        busy_ = true;
        overlay_ = std::make_unique<honor::HonorSummaryOverlay>(around_, &service_);
        overlay_->show();
    }
    Refresh start()
    {
        import_mail();
        service_.stop();
        return refresh(*this, [this] {
            busy_ = true;
            service_.start();
        });
    }
    Refresh sync(double since)
    {
        roll_->read_at = since;
        refresh(*this, [this] {
            busy_ = true;
            service_.trigger_sync();
        });
        import_mail();
        return refresh(*this, [this] {
            busy_ = true;
            service_.trigger_sync();
        });
    }

private:
    /// After which nothing that was remembered holds any more.
    void import_mail()
    {
        data::BattleReport report;
        report.chain_start_time = end_ - 60.0;
        report.chain_end_time = end_;
        report.player_name = QStringLiteral("Player 1");
        report.rounds.resize(10);
        around_.db.insert_report(QStringLiteral("Persistent.Mail.%1").arg(++mails_), report, end_);
    }

    ui::Surroundings around_;
    double end_;
    std::shared_ptr<FreshRoll> roll_ = std::make_shared<FreshRoll>();
    mutable honor::HonorSummaryService service_;
    std::unique_ptr<honor::HonorSummaryOverlay> overlay_;
    bool busy_ = false;
    int mails_ = 0;
};

void measure_queries(const data::TallyDb &db, double end)
{
    QSqlQuery plan(db.connection());
    bool is_range = false;
    if (plan.exec(QStringLiteral("EXPLAIN QUERY PLAN ") +
                  data::honor_since_statement().replace(u'?', u'1'))) {
        while (plan.next()) {
            const QString step = plan.value(3).toString();
            std::printf("plan of honor_since: %s\n", qPrintable(step));
            is_range = is_range || step.contains(QStringLiteral("INDEX idx_slices_mail (<"));
        }
    }
    print_figure("honor_since_is_an_index_range", is_range ? 1 : 0, Goal::at_least, 1);
    const auto count_since = [&db](double since) {
        return microseconds_a_call(100,
                                   [&db, &since] {
                                       since += 0.001; // or it would be remembered
                                       db.honor_since(since);
                                   }) /
               1e3;
    };
    const double last_day = count_since(end - day);
    const double two_years = count_since(end - 730 * day);
    const double again = microseconds_a_call(100, [&] { db.honor_since(end - 730 * day); }) / 1e3;
    std::printf("honor of the last day %d, of two years %d; remembered in %.3f ms\n",
                db.honor_since(end - day), db.honor_since(end - 730 * day), again);
    print_figure("honor_since_last_day_ms", last_day, Goal::at_most, 1);
    print_figure("honor_since_two_years_ms", two_years, Goal::at_most, 20);
}

void measure_stops(Tracker &tracker, double end)
{
    const auto longest_stop = [](const char *name, const auto &work) {
        std::vector<double> stops;
        for (int i = 0; i < readings; ++i) {
            const Refresh times = work();
            std::printf("%s: stop %.1f ms, shown after %.1f ms\n", name, times.stop, times.until);
            stops.push_back(times.stop);
        }
        return median(stops);
    };
    const double start = longest_stop("start", [&] { return tracker.start(); });
    const double sync = longest_stop("sync", [&] { return tracker.sync(end - day); });
    // A program that has run for so long without a new figure.
    const double late =
        longest_stop("sync after a month", [&] { return tracker.sync(end - 30 * day); });
    print_figure("honor_start_stop_ms", start, Goal::at_most, 16);
    print_figure("honor_sync_stop_ms", sync, Goal::at_most, 16);
    print_figure("honor_sync_after_a_month_stop_ms", late, Goal::at_most, 16);
}

/// Between two readings.
void measure_idle(Tracker &tracker, Settings &settings, int seconds)
{
    QWidget game;
    game.setWindowTitle(QStringLiteral("Rise of Kingdoms"));
    game.setGeometry(100, 100, 900, 700);
    game.show();
    if (!QTest::qWaitForWindowActive(&game))
        return std::puts("no window manager"), void();
    settings.set(settings::honor_tracker_pinned, true);
    tracker.start();
    run_events(1'000);
    const double pinned = share(seconds);
    settings.set(settings::honor_tracker_pinned, false);
    const double free = share(seconds / 2);
    const double snapshot =
        microseconds_a_call(200, [&tracker] { tracker.service().snapshot(); }) / 1e3;
    const double bare = share_of_bare_timer(seconds / 2);
    std::printf("pinned for %d s: %.3f %% of a core, free %.3f %%, free with a bare timer %.3f %%; "
                "a snapshot with nothing new %.3f ms\n",
                seconds, pinned, free, bare, snapshot);
    print_figure("honor_tracker_core_percent", pinned, Goal::at_most, 0.2);
}

} // namespace

int main(int argc, char *argv[])
{
    const int seconds = argc > 1 ? std::atoi(argv[1]) : default_seconds;
    const test::XSession session;
    if (!session.running() || seconds <= 0) {
        std::fputs("usage: honor_bench [SECONDS] (needs Xvfb and openbox)\n", stderr);
        return 2;
    }
    qputenv("DISPLAY", session.display());
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(argc, argv);
    FilledStore store(1'000'000);
    const std::unique_ptr<platform::Host> host = platform::make_system_host();
    measure_queries(store.db, store.end);
    Tracker tracker(store.surroundings(*host), store.end);
    tracker.open();
    if (!QTest::qWaitFor([&tracker] { return !tracker.busy(); }, 60'000))
        return std::puts("no reading is shown"), 1;
    measure_stops(tracker, store.end);
    measure_idle(tracker, store.settings, seconds);
}
