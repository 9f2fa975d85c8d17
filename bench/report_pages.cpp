#include "report_pages.h"

#include "data/mail/fort_report.h"
#include "data/mail/trial_report.h"
#include "data/store/tally_db.h"
#include "figure.h"
#include "page_refresh.h"
#include "queries/store_queries.h"
#include "services/keep_cooldown_service.h"
#include "settings/settings.h"
#include "store_filler.h"
#include "ui/forts/fort_rally_tab.h"
#include "ui/keep/barbarian_keep_tab.h"
#include "ui/report_tabs.h"
#include "ui/trials/baulur_run_tab.h"

#include <QCoreApplication>
#include <QFile>

#include <unistd.h>

#include <cstdio>
#include <memory>

namespace tally::bench {
namespace {

constexpr double last_day = 1'789'948'800.0 + 3600.0;
constexpr int repeats = 7;

double resident_mib()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    const double pages = file.readAll().split(' ').value(1).toDouble();
    return pages * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

/// One more fort and one more kill of the keep, as the watcher brings them.
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
}

template <typename Page>
void bench_report_page(const char *name, Page &page, data::TallyDb &db, int &mails)
{
    const auto ask = [&page] {
        page.refresh();
    };
    std::vector<double> stops;
    std::vector<double> shown;
    std::vector<double> again;
    for (int i = 0; i < repeats; ++i) {
        add_mails(db, ++mails);
        const Refresh first = refresh(page, ask);
        const Refresh second = refresh(page, ask);
        stops.push_back(first.stop);
        shown.push_back(first.until);
        again.push_back(second.stop);
        std::printf("%s: stop %.1f ms, figures after %.1f ms, again stop %.1f ms\n", name,
                    first.stop, first.until, second.stop);
    }
    const double before = resident_mib();
    for (int i = 0; i < 100; ++i)
        refresh(page, ask);
    const std::string key = std::string(name) + "_refresh_";
    print_figure(key + "stop_ms", median(stops), Goal::at_most, 40);
    print_figure(key + "shown_ms", median(shown), Goal::at_most, 150);
    print_figure(key + "again_stop_ms", median(again), Goal::at_most, 5);
    print_figure(key + "100_growth_mib", resident_mib() - before, Goal::at_most, 1);
}

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

    std::vector<double> stops;
    std::vector<double> again;
    for (int i = 0; i < repeats; ++i) {
        add_mails(db, ++mails);
        stops.push_back(refresh(*keep, [&pages] { pages.refresh_all(); }).stop);
        again.push_back(refresh(*keep, [&pages] { pages.refresh_all(); }).stop);
    }
    print_figure("report_pages_refresh_all_stop_ms", median(stops), Goal::at_most, 30);
    print_figure("report_pages_refresh_all_again_stop_ms", median(again), Goal::at_most, 5);
}

} // namespace tally::bench
