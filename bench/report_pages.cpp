#include "report_pages.h"

#include "data/mail/fort_report.h"
#include "data/mail/trial_report.h"
#include "data/store/tally_db.h"
#include "page_bench.h"
#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "services/keep_cooldown_service.h"
#include "settings/settings.h"
#include "store_filler.h"
#include "ui/chains/chain_tracker_tab.h"
#include "ui/field/field_fights_tab.h"
#include "ui/forts/fort_rally_tab.h"
#include "ui/keep/barbarian_keep_tab.h"
#include "ui/report_tabs.h"
#include "ui/trials/baulur_run_tab.h"

#include <QCoreApplication>
#include <QFile>

#include <unistd.h>

#include <algorithm>
#include <string>

namespace tally::bench {
namespace {

constexpr double last_day = 1'789'948'800.0 + 3600.0;

double resident_mib()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    const double pages = file.readAll().split(' ').value(1).toDouble();
    return pages * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

/// One more fort, one more kill of the keep and one more field fight, as the watcher brings them.
void add_mails(data::TallyDb &db, int number)
{
    data::FortReport fort;
    fort.fort_level = 5;
    fort.event_time = last_day + number;
    fort.loot = {{1.0, 2.0, 3.0}};
    db.insert_fort_report(QStringLiteral("Persistent.Mail.8%1").arg(number), fort, last_day);
    data::TrialReport kill;
    kill.boss_name = QStringLiteral("Ironhand Baulur");
    kill.event_time = last_day + number;
    kill.participants.resize(1);
    kill.participants.front().player_name = QStringLiteral("Player 1");
    kill.participants.front().loot = {{1.0, 2.0, 3.0}};
    db.insert_trial_report(QStringLiteral("Persistent.Mail.9%1").arg(number), kill, last_day);
    const QVariantMap attack{{QStringLiteral("attack_id"), 1.0},
                             {QStringLiteral("email_time"), last_day + number},
                             {QStringLiteral("my_ct"), 1.0},
                             {QStringLiteral("player_id"), 5'000'000.0}};
    db.insert_field_report(QStringLiteral("Persistent.Mail.6%1").arg(number), {attack}, last_day);
}

template <typename Page>
void bench_report_page(const char *name, Page &page, data::TallyDb &db, int &mails)
{
    const auto ask = [&page] {
        page.refresh();
    };
    const RefreshTimes times = time_refreshes(
        name, page, [&] { add_mails(db, ++mails); }, ask);
    const double before = resident_mib();
    for (int i = 0; i < 100; ++i)
        refresh(page, ask);
    print_refresh_figures(name, times, 150);
    print_figure(std::string(name) + "_refresh_100_growth_mib", resident_mib() - before,
                 Goal::at_most, 1);
}

/// Whichever page is in front, a refresh of all stops the window for no longer.
class AllPages {
public:
    AllPages(ui::ReportTabs &pages, data::TallyDb &db, int &mails)
        : pages_(pages), db_(db), mails_(mails)
    {}

    template <typename Page>
    void refresh_behind(const char *name, Page &front)
    {
        const auto refresh_all = [this] {
            pages_.refresh_all();
        };
        refresh(front, [&] { pages_.setCurrentWidget(&front); });
        const RefreshTimes times = time_refreshes(
            name, front, [this] { add_mails(db_, ++mails_); }, refresh_all);
        stop_ = std::max(stop_, median(times.stops));
        again_ = std::max(again_, median(times.again));
    }

    void print_figures() const
    {
        print_figure("report_pages_refresh_all_stop_ms", stop_, Goal::at_most, 30);
        print_figure("report_pages_refresh_all_again_stop_ms", again_, Goal::at_most, 5);
    }

private:
    ui::ReportTabs &pages_;
    data::TallyDb &db_;
    int &mails_;
    double stop_ = 0.0;
    double again_ = 0.0;
};

} // namespace

void bench_report_pages(const QString &folder)
{
    const QString path = folder + QStringLiteral("/reports.db");
    tools::FillOptions options;
    options.rounds = 1'000'000;
    tools::fill_store(path, options);
    data::TallyDb db(path);
    db.init_schema();
    Settings settings(db);
    queries::StoreQueries queries(db);
    const auto clock = [] {
        return last_day;
    };
    const QString icons = folder + QStringLiteral("/reference/icon");
    services::KeepCooldownService service(&db, &settings, nullptr, nullptr, clock);
    queries::Asker last_kill(queries);
    service.set_kill_query([&last_kill](const auto &found, const auto &failed) {
        last_kill.ask(
            [](const data::TallyDb &store, const queries::IsOutdated &) {
                return services::KeepCooldownService::last_kill(store);
            },
            found, failed);
    });
    ui::ReportTabs pages(nullptr);
    auto *trials = new ui::BaulurRunTab(&queries, icons, &pages, clock);
    auto *forts = new ui::FortRallyTab(&queries, icons, &pages, clock);
    auto *keep = new ui::BarbarianKeepTab(&queries, &service, icons, &pages);
    pages.add(trials, QStringLiteral("trials"));
    pages.add(forts, QStringLiteral("forts"));
    pages.add(keep, QStringLiteral("keep"));
    pages.resize(1400, 900);
    pages.show();
    int mails = 0;
    refresh(*trials, [trials] { trials->refresh(); });
    bench_report_page("trials", *trials, db, mails);
    pages.setCurrentWidget(forts);
    bench_report_page("forts", *forts, db, mails);
    pages.setCurrentWidget(keep);
    bench_report_page("keep", *keep, db, mails);

    platform::FakeHost host;
    const ui::Surroundings around{.db = db,
                                  .queries = queries,
                                  .settings = settings,
                                  .host = host,
                                  .clock = clock,
                                  .icon_dir = icons};
    auto *chains = new ui::ChainTrackerTab(around, 1.0, &pages);
    pages.add(chains, QStringLiteral("chains"));
    ui::FieldFightsTab *fights = nullptr;
    for (const int mode : {3, 2, 1, 0}) {
        fights = new ui::FieldFightsTab(around, mode, &pages);
        pages.add(fights, QString::number(mode));
    }
    AllPages all(pages, db, mails);
    all.refresh_behind("all behind trials", *trials);
    all.refresh_behind("all behind forts", *forts);
    all.refresh_behind("all behind the keep", *keep);
    all.refresh_behind("all behind chains", *chains);
    all.refresh_behind("all behind field fights", *fights);
    all.print_figures();
}

} // namespace tally::bench
