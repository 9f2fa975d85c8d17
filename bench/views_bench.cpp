// The pages of the window on stores of years of play: how long a refresh stops the window, and what
// a repeated one costs. views_bench [slow | field | chains | reports]

#include "data/mail/battle_report.h"
#include "data/master/master_cache.h"
#include "data/store/tally_db.h"
#include "field_pages.h"
#include "figure.h"
#include "page_refresh.h"
#include "platform/host/fake/fake_host.h"
#include "queries/store_queries.h"
#include "reference_folder.h"
#include "report_pages.h"
#include "settings/settings.h"
#include "store_filler.h"
#include "ui/chains/chain_tracker_tab.h"
#include "ui/report_tabs.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace {

using namespace tally;
using namespace tally::bench;

constexpr double barbarians = 1.0;
constexpr int repeats = 7;

QJsonObject table(const QString &reference, const QString &kind)
{
    QFile file(QStringLiteral("%1/master/%2.json").arg(reference, kind));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no reference data");
    return QJsonDocument::fromJson(file.readAll()).object();
}

/// Names and icons for the heroes and items of `fill_store`.
void load_reference_data(const QString &reference)
{
    sample::write_reference_folder(reference);
    const QJsonObject index = table(reference, QStringLiteral("icons_index"));
    const QStringList hero_icons = index.value(u"commanders").toObject().keys();
    const QStringList item_icons = index.value(u"all_loot").toObject().keys();
    QVariantMap heroes;
    for (int number = 1; number <= 24; ++number)
        heroes[QString::number(number * 7)] =
            QVariantMap{{QStringLiteral("name"), QStringLiteral("Hero of Thebes %1").arg(number)},
                        {QStringLiteral("icon"),
                         hero_icons.at(number % hero_icons.size()) + QStringLiteral(".webp")}};
    QVariantMap items;
    for (int kind = 0; kind < 40; ++kind)
        items[QStringLiteral("%1.0_%2.0").arg(1 + kind % 5).arg(kind)] =
            QVariantMap{{QStringLiteral("name"), QStringLiteral("Item %1").arg(kind)},
                        {QStringLiteral("unit"), QStringLiteral("min")},
                        {QStringLiteral("unit_value"), 5},
                        {QStringLiteral("icon"), item_icons.at(kind % item_icons.size())}};
    data::MasterCache &master = data::MasterCache::instance();
    master.set_kind(QStringLiteral("heroes"), {{QStringLiteral("heroes"), heroes}});
    master.set_kind(QStringLiteral("items"), {{QStringLiteral("items"), items}});
    master.set_kind(QStringLiteral("icons_index"), index.toVariantMap());
}

Refresh refresh_page(ui::ChainTrackerTab &tab)
{
    return refresh(tab, [&tab] { tab.refresh(); });
}

/// A page over a store of years of play, on its last day.
class Page {
public:
    Page(const QString &folder, int rounds)
        : path_(QStringLiteral("%1/%2.db").arg(folder).arg(rounds))
    {
        tools::FillOptions options;
        options.rounds = rounds;
        tools::fill_store(path_, options);
        db_ = std::make_unique<data::TallyDb>(path_);
        db_->init_schema();
        settings_ = std::make_unique<Settings>(*db_);
        QElapsedTimer timer;
        timer.start();
        queries_ = std::make_unique<queries::StoreQueries>(*db_);
        const ui::Surroundings around{.db = *db_,
                                      .queries = *queries_,
                                      .settings = *settings_,
                                      .host = host_,
                                      .clock = [] { return last_day; },
                                      .icon_dir = folder + QStringLiteral("/reference/icon")};
        tab_ = std::make_unique<ui::ChainTrackerTab>(around, barbarians);
        tab_->resize(1400, 900);
        tab_->show();
        std::printf("opened in %.1f ms\n", milliseconds(timer));
        choice(QStringLiteral("Player")).setCurrentIndex(0);
        refresh_page(*tab_);
    }

    ~Page()
    {
        tab_.reset();
        queries_.reset();
        db_.reset();
        QFile::remove(path_);
    }

    void look_at_all_time() const
    {
        for (auto *date : tab_->findChildren<QDateEdit *>()) {
            if (date->accessibleName().startsWith(u"From"))
                date->setDate(QDate(2000, 1, 1));
        }
        refresh_page(*tab_);
    }

    /// After one more chain, as the watcher brings it.
    Refresh refresh_after_a_mail()
    {
        data::BattleReport report;
        report.chain_start_time = last_day + mails_;
        report.chain_end_time = last_day + mails_ + 60.0;
        report.hero_id_1 = 7.0;
        report.hero_id_2 = 91.0;
        report.player_id = 5'000'000.0;
        report.player_name = QStringLiteral("Player 1");
        report.rounds.resize(10);
        for (data::BattleRound &round : report.rounds)
            round.npc_btype = barbarians;
        data::TallyDb(path_).insert_report(QStringLiteral("Persistent.Mail.%1").arg(++mails_),
                                           report, last_day);
        return refresh_page(*tab_);
    }

    Refresh refresh_again() { return refresh_page(*tab_); }

    /// The query for the rounds of a pair, over a time in which it fought 300 chains.
    double pair_milliseconds() const
    {
        double days = 365.0;
        std::vector<data::ChainRun> chains;
        QElapsedTimer timer;
        for (int step = 0; step < 20; ++step) {
            timer.start();
            chains = db_->chains_for_pair(7, 91, barbarians, last_day - days * 86400.0, {}, {});
            days *= 300.0 / std::max(1.0, static_cast<double>(chains.size()));
        }
        std::printf("pair: %zu chains\n", chains.size());
        return milliseconds(timer);
    }

private:
    static constexpr double last_day = 1'789'948'800.0 + 3600.0;

    QComboBox &choice(const QString &name) const
    {
        for (auto *combo : tab_->findChildren<QComboBox *>()) {
            if (combo->accessibleName() == name)
                return *combo;
        }
        throw std::runtime_error("no such choice");
    }

    QString path_;
    std::unique_ptr<data::TallyDb> db_;
    std::unique_ptr<queries::StoreQueries> queries_;
    std::unique_ptr<Settings> settings_;
    platform::FakeHost host_;
    std::unique_ptr<ui::ChainTrackerTab> tab_;
    int mails_ = 0;
};

struct Figures {
    double stop;       ///< median
    double worst_stop; ///< of all
    double shown;      ///< median time until the figures stand
    double repeat;     ///< median of an unchanged refresh
};

Figures measure(Page &page, const char *name)
{
    std::vector<double> stops;
    std::vector<double> firsts;
    std::vector<double> seconds;
    for (int i = 0; i < repeats; ++i) {
        const Refresh first = page.refresh_after_a_mail();
        const Refresh second = page.refresh_again();
        stops.push_back(first.stop);
        firsts.push_back(first.until);
        seconds.push_back(second.until);
        std::printf("%s: stop %.1f ms, figures after %.1f ms, again after %.2f ms\n", name,
                    first.stop, first.until, second.until);
    }
    return {median(stops), *std::max_element(stops.begin(), stops.end()), median(firsts),
            median(seconds)};
}

/// A tenth of a refresh after a mail, or what nobody would notice.
double longest_repeat(const Figures &figures)
{
    return std::max(figures.shown / 10.0, 2.0);
}

void bench_page(const QString &folder, int rounds)
{
    Page page(folder, rounds);
    const std::string at = "_at_" + std::to_string(rounds);
    const bool is_large = rounds >= 1'000'000;
    const Figures day = measure(page, ("one day" + at).c_str());
    page.look_at_all_time();
    const Figures all = measure(page, ("all time" + at).c_str());
    const double pair = page.pair_milliseconds();
    print_figure("chains_refresh_day_stop_ms" + at, day.stop, Goal::at_most, 40);
    print_figure("chains_refresh_day_shown_ms" + at, day.shown, Goal::at_most, 100);
    print_figure("chains_refresh_day_again_ms" + at, day.repeat, Goal::at_most,
                 longest_repeat(day));
    print_figure("chains_refresh_all_stop_ms" + at, all.stop, Goal::at_most, 300);
    print_figure("chains_refresh_all_shown_ms" + at, all.shown, Goal::at_most,
                 is_large ? 2000 : 300);
    print_figure("chains_refresh_all_again_ms" + at, all.repeat, Goal::at_most,
                 longest_repeat(all));
    print_figure("chains_refresh_all_worst_stop_ms" + at, all.worst_stop, Goal::at_most,
                 is_large ? 120 : 300);
    print_figure("pair_of_300_chains_query_ms" + at, pair, Goal::at_most, 100);
}

/// A window with eight pages whose answers take 300 ms: how long a refresh of all stops it, the
/// first time and after each mail.
void bench_slow_pages(const QString &folder)
{
    data::TallyDb db(folder + QStringLiteral("/slow.db"));
    db.init_schema();
    queries::StoreQueries queries(db);
    Settings settings(db);
    platform::FakeHost host;
    const ui::Surroundings around{.db = db, .queries = queries, .settings = settings, .host = host};
    ui::ChainTrackerSetup setup;
    setup.figures = [](const auto &store, const auto &question, const auto &is_outdated) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return ui::chain_figures(store, question, is_outdated);
    };
    ui::ReportTabs pages(nullptr);
    std::vector<ui::ChainTrackerTab *> tabs;
    for (int page = 0; page < 8; ++page) {
        tabs.push_back(new ui::ChainTrackerTab(around, barbarians, &pages, setup));
        pages.add(tabs.back(), QString::number(page));
    }
    pages.resize(1400, 900);
    pages.show();
    while (tabs.front()->busy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    std::vector<double> stops;
    for (int i = 0; i < repeats; ++i) {
        const Refresh result = refresh(*tabs.front(), [&pages] { pages.refresh_all(); });
        stops.push_back(result.stop);
        std::printf("eight slow pages: stop %.1f ms, figures after %.1f ms\n", result.stop,
                    result.until);
    }
    print_figure("slow_pages_first_stop_ms", stops.front(), Goal::at_most, 30);
    print_figure("slow_pages_later_stop_ms", median({stops.begin() + 1, stops.end()}),
                 Goal::at_most, 30);
    double shown = 0.0;
    for (int page = 1; page < 8; ++page) {
        const Refresh result =
            refresh(*tabs[page], [&pages, page] { pages.setCurrentIndex(page); });
        shown = std::max(shown, result.stop);
    }
    print_figure("slow_pages_turn_to_hidden_stop_ms", shown, Goal::at_most, 60);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QTemporaryDir folder(QCoreApplication::applicationDirPath() +
                               QStringLiteral("/views-XXXXXX"));
    load_reference_data(folder.filePath(QStringLiteral("reference")));
    const std::string_view chosen = argc > 1 ? argv[1] : "";
    const auto is_chosen = [chosen](std::string_view part) {
        return chosen.empty() || chosen == part;
    };
    if (is_chosen("slow"))
        bench_slow_pages(folder.path());
    if (is_chosen("field"))
        bench_field_pages(folder.path());
    for (const int rounds : {100'000, 1'000'000}) {
        if (is_chosen("chains"))
            bench_page(folder.path(), rounds);
    }
    if (is_chosen("reports"))
        bench_report_pages(folder.path());
}
