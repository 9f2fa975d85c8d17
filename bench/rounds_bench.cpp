// The window of a hero pair's rounds. With 300 chains of ten rounds: the time from its construction
// to the first painted frame, and the frames while it is scrolled from top to bottom. Over a store
// of years of play: the time from the click to the first rounds, and the frames at its oldest ones.

#include "data/master/master_cache.h"
#include "data/store/tally_db.h"
#include "figure.h"
#include "queries/asker.h"
#include "reference_folder.h"
#include "sample_items.h"
#include "store_filler.h"
#include "ui/chains/chain_list.h"
#include "ui/chains/round_overview_window.h"
#include "ui/chains/round_row_widget.h"
#include "ui/items/item_pictures.h"
#include "ui/parts/theme.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QScrollBar>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QWheelEvent>

#include <cstdio>
#include <ctime>
#include <random>
#include <stdexcept>

namespace {

using namespace tally;
using namespace tally::bench;

constexpr int chain_count = 300;
constexpr int rounds_a_chain = 10;
constexpr int openings = 5;
constexpr double frame_milliseconds = 16.7;
constexpr int most_rounds_with_a_goal = 200'000; // of one pair, 20,000 chains

void load_reference(const QDir &folder)
{
    sample::write_reference_folder(folder.path());
    for (const QString &kind : {QStringLiteral("heroes"), QStringLiteral("items"),
                                QStringLiteral("barbs"), QStringLiteral("icons_index")}) {
        QFile table(folder.filePath(QStringLiteral("master/%1.json").arg(kind)));
        if (!table.open(QIODevice::ReadOnly) ||
            !data::MasterCache::instance().load_json(kind, table.readAll()))
            throw std::runtime_error("no reference data");
    }
}

/// A third of the rounds got away, a chain in five went for a fort.
class SampleRounds {
public:
    std::vector<data::ChainRun> chains;
    std::vector<std::optional<data::FortOfChain>> forts;

    SampleRounds()
    {
        for (int i = 0; i < chain_count; ++i) {
            const bool with_fort = i % 5 == 0;
            data::ChainRun chain{.file_name = QStringLiteral("Persistent.Mail.%1").arg(i),
                                 .chain_start_time = 1.75e9 - i * 900.0,
                                 .chain_end_time = 1.75e9 - i * 900.0 + number(40, 800),
                                 .fort_file_name = {},
                                 .rounds = {}};
            for (int no = 0; no < rounds_a_chain; ++no)
                chain.rounds.push_back(round(no, with_fort, no + 1 == rounds_a_chain));
            chains.push_back(std::move(chain));
            forts.push_back(with_fort ? std::optional(fort()) : std::nullopt);
        }
    }

private:
    int number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    std::vector<data::LootEntry> loot(int least, int most)
    {
        std::vector<data::LootEntry> result;
        const auto items = sample::sample_items();
        for (int i = number(least, most); i > 0; --i) {
            const auto &item = items[static_cast<size_t>(number(0, int(items.size()) - 1))];
            result.push_back(
                {.item_type = item.type, .item_subtype = item.subtype, .value = number(1, 40'000)});
        }
        return result;
    }

    data::ChainRound round(int no, bool with_fort, bool is_last)
    {
        data::ChainRound round;
        round.round_no = no;
        round.npc_type = number(150'009, 150'050);
        round.npc_ctid = number(1, 2500);
        round.damage_taken = number(1000, 90'000);
        round.damage_dealt = number(10'000, 900'000);
        round.is_fort_round = with_fort && is_last;
        round.is_free_ap = with_fort && !is_last;
        if (number(0, 2) != 0 && !round.is_fort_round)
            round.loot = loot(3, 6);
        return round;
    }

    data::FortOfChain fort()
    {
        data::FortOfChain fort;
        fort.fort_level = 5;
        fort.damage_percent = number(1, 100);
        fort.loot = loot(6, 9);
        return fort;
    }

    std::mt19937 random_{1};
};

/// An open overview; drawn when the constructor is done.
class OpenWindow {
public:
    OpenWindow(const SampleRounds &rounds, const QString &icon_dir)
        : window_(new ui::RoundOverviewWindow(1, 2, QStringLiteral("Ada"), QStringLiteral("Bea"),
                                              rounds.chains, rounds.forts, icon_dir))
    {
        window_->show();
        QCoreApplication::processEvents();
    }
    ~OpenWindow()
    {
        window_->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    OpenWindow(const OpenWindow &) = delete;
    OpenWindow &operator=(const OpenWindow &) = delete;

    QAbstractScrollArea &list() const { return *window_->findChild<QAbstractScrollArea *>(); }

private:
    QPointer<ui::RoundOverviewWindow> window_;
};

/// What the clock on the wall and the processor's own say; they part on a busy machine.
struct Cost {
    double milliseconds = 0.0;
    double cpu_milliseconds = 0.0;
};

template <typename Action>
Cost cost_of(Action action)
{
    QElapsedTimer timer;
    timer.start();
    const std::clock_t begin = std::clock();
    action();
    const std::clock_t end = std::clock();
    return {static_cast<double>(timer.nsecsElapsed()) / 1e6,
            static_cast<double>(end - begin) * 1e3 / CLOCKS_PER_SEC};
}

/// The value that this share of all does not pass.
double quantile(std::vector<Cost> costs, double share, double Cost::*clock)
{
    std::ranges::sort(costs, {}, clock);
    return costs[static_cast<size_t>(share * static_cast<double>(costs.size() - 1))].*clock;
}

double opening_milliseconds(const SampleRounds &rounds, const QString &icon_dir)
{
    std::vector<double> times;
    for (int i = 0; i < openings; ++i) {
        ui::forget_item_pictures();
        std::optional<OpenWindow> window;
        times.push_back(cost_of([&] { window.emplace(rounds, icon_dir); }).milliseconds);
        std::printf("open %.1f ms\n", times.back());
    }
    return median(times);
}

/// No tile is known any more, but all icons are: the page behind the window shows the same items.
void forget_tiles(const QString &icon_dir)
{
    ui::forget_item_pictures();
    for (const sample::SampleItem &item : sample::sample_items())
        ui::item_icon(data::MasterCache::instance().item(item.type, item.subtype).icon, icon_dir);
}

void turn_wheel(QAbstractScrollArea &list)
{
    const QPointF centre = list.viewport()->rect().center();
    QWheelEvent notch(centre, list.viewport()->mapToGlobal(centre), {}, {0, -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(list.viewport(), &notch);
}

void turn_page(QAbstractScrollArea &list)
{
    list.verticalScrollBar()->triggerAction(QScrollBar::SliderPageStepAdd);
}

/// Scrolls from top to bottom and prints what its frames took, each from the input to the end of
/// painting.
void scroll(const char *name, const OpenWindow &window, void (*step)(QAbstractScrollArea &))
{
    QAbstractScrollArea &list = window.list();
    QScrollBar *bar = list.verticalScrollBar();
    bar->setValue(0);
    QCoreApplication::processEvents();
    std::vector<Cost> frames;
    while (bar->value() < bar->maximum())
        frames.push_back(cost_of([&list, step] {
            step(list);
            QCoreApplication::processEvents();
        }));
    for (const double share : {0.5, 0.95, 1.0})
        std::printf("%s: %g of %zu frames within %.2f ms, %.2f ms of the processor\n", name, share,
                    frames.size(), quantile(frames, share, &Cost::milliseconds),
                    quantile(frames, share, &Cost::cpu_milliseconds));
    print_figure(std::string(name) + "_frame_p95_milliseconds",
                 quantile(frames, 0.95, &Cost::milliseconds), Goal::at_most, frame_milliseconds);
    print_figure(std::string(name) + "_frame_slowest_milliseconds",
                 quantile(frames, 1.0, &Cost::milliseconds), Goal::at_most, frame_milliseconds);
}

/// A store whose chains all belong to one pair.
class PairStore {
public:
    PairStore(const QString &folder, int rounds)
        : path_(QStringLiteral("%1/%2.db").arg(folder).arg(rounds))
    {
        tools::FillOptions options;
        options.rounds = rounds;
        tools::fill_store(path_, options);
        db_ = std::make_unique<data::TallyDb>(path_);
        db_->init_schema();
        db_->complete_chain_slices();
        for (const char *table : {"reports", "chain_slices"}) {
            QSqlQuery query(db_->connection());
            if (!query.exec(QStringLiteral("UPDATE %1 SET hero_id_1 = 7, hero_id_2 = 91")
                                .arg(QLatin1StringView(table))))
                throw std::runtime_error("the chains cannot be made those of one pair");
        }
        db_->complete_chain_slices();
        queries_ = std::make_unique<queries::StoreQueries>(*db_);
    }

    queries::StoreQueries &queries() { return *queries_; }

private:
    QString path_;
    std::unique_ptr<data::TallyDb> db_;
    std::unique_ptr<queries::StoreQueries> queries_;
};

int rows_shown(const QWidget &window)
{
    return static_cast<int>(
        std::ranges::count_if(window.findChildren<ui::RoundRowWidget *>(), &QWidget::isVisible));
}

/// From the click on a pair to its first rounds on the screen.
double click_milliseconds(PairStore &store, const QString &icon_dir,
                          std::unique_ptr<ui::RoundOverviewWindow> &window)
{
    constexpr double any = 1.0;
    queries::Asker asker(store.queries(), queries::Sight::Seen);
    return cost_of([&] {
               asker.ask(
                   [](const data::TallyDb &db, const queries::IsOutdated &) {
                       return db.chain_heads_for_pair(7, 91, db.question(any, {}, {}, {}));
                   },
                   [&](std::vector<data::ChainHead> heads) {
                       window = std::make_unique<ui::RoundOverviewWindow>(
                           store.queries(), QStringLiteral("Ada"), QStringLiteral("Bea"),
                           std::move(heads), icon_dir);
                       window->setAttribute(Qt::WA_DeleteOnClose, false);
                       window->show();
                   });
               while (!window || rows_shown(*window) == 0)
                   QCoreApplication::processEvents();
               QCoreApplication::processEvents();
           })
        .milliseconds;
}

/// Turns the wheel from the oldest rounds upwards and prints what its frames took.
void scroll_at_the_end(const std::string &name, const QWidget &window)
{
    auto &list = *window.findChild<ui::ChainList *>();
    QScrollBar *bar = list.verticalScrollBar();
    bar->setValue(bar->maximum());
    while (rows_shown(window) == 0)
        QCoreApplication::processEvents();
    std::vector<Cost> frames;
    int empty = 0;
    for (int i = 0; i < 300; ++i) {
        frames.push_back(cost_of([bar] {
            bar->setValue(bar->value() - 60);
            QCoreApplication::processEvents();
        }));
        empty += rows_shown(window) < 5 ? 1 : 0;
    }
    std::printf("%s: %lld pixels, %d of %zu frames without rounds\n", name.c_str(),
                static_cast<long long>(list.total_height()), empty, frames.size());
    print_figure(name + "_frame_p95_milliseconds", quantile(frames, 0.95, &Cost::milliseconds),
                 Goal::at_most, frame_milliseconds);
}

void bench_years(const QString &folder, const QString &icon_dir, int rounds)
{
    PairStore store(folder, rounds);
    std::vector<double> times;
    std::unique_ptr<ui::RoundOverviewWindow> window;
    for (int i = 0; i < openings; ++i) {
        window.reset();
        times.push_back(click_milliseconds(store, icon_dir, window));
        std::printf("%d rounds: click to shown %.1f ms\n", rounds, times.back());
    }
    const std::string name = "rounds_of_" + std::to_string(rounds);
    if (rounds <= most_rounds_with_a_goal)
        print_figure(name + "_click_to_shown_milliseconds", median(times), Goal::at_most, 100);
    scroll_at_the_end(name, *window);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ui::apply_to_app(&application, 0);
    const QTemporaryDir folder;
    load_reference(QDir(folder.path()));
    const QString icon_dir = folder.filePath(QStringLiteral("icon"));
    const SampleRounds rounds;

    const double opening = opening_milliseconds(rounds, icon_dir);
    const OpenWindow window(rounds, icon_dir);
    forget_tiles(icon_dir);
    scroll("rounds_wheel", window, turn_wheel);
    forget_tiles(icon_dir);
    scroll("rounds_page", window, turn_page);
    print_figure("rounds_open_milliseconds", opening, Goal::at_most, 400);
    for (const int count : {20'000, 200'000, 300'000})
        bench_years(folder.path(), icon_dir, count);
}
