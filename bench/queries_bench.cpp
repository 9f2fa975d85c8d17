// The queries that views ask on the GUI thread, on stores of years of play:
// queries_bench [ROUNDS | STORE]... (100000 and 1000000 without)

#include "data/mail/battle_report.h"
#include "data/store/tally_db.h"
#include "figure.h"
#include "store_filler.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>

namespace {

using namespace tally;
using namespace tally::bench;

constexpr double barbarians = 1.0;
constexpr double day = 86400.0;
constexpr int repeats = 5;

using Time = std::optional<double>;

struct Span {
    const char *name;
    double days; ///< 0 for all time
};
constexpr Span spans[] = {{"day", 1.0}, {"month", 30.0}, {"all", 0.0}};

struct Query {
    const char *name;
    std::function<void(const data::TallyDb &, Time, Time)> ask;
};

const std::vector<Query> chain_queries = {
    {"summary",
     [](const data::TallyDb &db, Time from, Time to) {
         db.summary(barbarians, from, to, {});
     }},
    {"loot_stats",
     [](const data::TallyDb &db, Time from, Time to) {
         db.loot_stats(barbarians, from, to, {});
     }},
    {"best_chain",
     [](const data::TallyDb &db, Time from, Time to) {
         db.best_chain(barbarians, from, to, {});
     }},
    {"hourly",
     [](const data::TallyDb &db, Time from, Time to) {
         db.hourly(barbarians, from, to, {});
     }},
    {"hero_pairs",
     [](const data::TallyDb &db, Time from, Time to) {
         db.hero_pairs(barbarians, from, to, {});
     }},
};

const std::vector<Query> other_queries = {
    {"players",
     [](const data::TallyDb &db, Time, Time) {
         db.players();
     }},
    {"honor_since",
     [](const data::TallyDb &db, Time from, Time) {
         db.honor_since(from.value_or(0.0));
     }},
    {"chains_for_pair",
     [](const data::TallyDb &db, Time from, Time to) {
         db.chains_for_pair(7, 91, barbarians, from, to, {});
     }},
    {"field_attacks",
     [](const data::TallyDb &db, Time from, Time to) {
         db.field_attacks(from, to, {}, 500, 0);
     }},
    {"field_summary",
     [](const data::TallyDb &db, Time from, Time to) {
         db.field_summary(from, to, {}, 0);
     }},
    {"field_players",
     [](const data::TallyDb &db, Time, Time) {
         db.field_players();
     }},
    {"top_enemies",
     [](const data::TallyDb &db, Time, Time) {
         db.top_enemies(2);
     }},
    {"trial_players",
     [](const data::TallyDb &db, Time from, Time to) {
         db.trial_players({}, from, to);
     }},
    {"trial_sessions",
     [](const data::TallyDb &db, Time from, Time to) {
         db.trial_sessions({}, from, to, 30);
     }},
    {"trial_loot_stats",
     [](const data::TallyDb &db, Time from, Time to) {
         db.trial_loot_stats({}, from, to, {}, nullptr);
     }},
    {"keep_player",
     [](const data::TallyDb &db, Time, Time) {
         db.keep_player();
     }},
    {"keep_kills",
     [](const data::TallyDb &db, Time, Time) {
         db.keep_kills(5'000'000.0, 50);
     }},
    {"fort_list",
     [](const data::TallyDb &db, Time from, Time to) {
         db.fort_list(from, to, 0, 500);
     }},
    {"fort_loot_stats",
     [](const data::TallyDb &db, Time from, Time to) {
         db.fort_loot_stats(from, to, 0, nullptr);
     }},
    {"report_count",
     [](const data::TallyDb &db, Time, Time) {
         db.report_count(barbarians);
     }},
};

double milliseconds_of(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

/// The fastest of `repeats` runs: the others had to wait for other programs.
double fastest(const std::vector<double> &times)
{
    return *std::min_element(times.begin(), times.end());
}

/// First calls, each on a connection that remembers nothing.
double first_call(const QString &path, const Query &query, Time from, Time to)
{
    std::vector<double> times;
    for (int run = 0; run < repeats; ++run) {
        const data::TallyDb db(path);
        db.connection();
        times.push_back(milliseconds_of([&] { query.ask(db, from, to); }));
    }
    return fastest(times);
}

double repeated_call(const QString &path, const Query &query, Time from, Time to)
{
    const data::TallyDb db(path);
    query.ask(db, from, to);
    std::vector<double> times;
    for (int run = 0; run < repeats; ++run)
        times.push_back(milliseconds_of([&] { query.ask(db, from, to); }));
    return fastest(times);
}

double goal_of(const std::string &query, const Span &span, int rounds)
{
    if (rounds <= 100'000)
        return 200.0;
    if (span.days == 1.0)
        return 10.0;
    if (span.days == 30.0)
        return 100.0;
    return query == "summary" || query == "loot_stats" ? 2000.0 : 500.0;
}

struct Figure {
    std::string name;
    double value;
    double goal;
};

class Bench {
public:
    void fill_and_measure(const QString &folder, int rounds);
    void measure(const QString &path, int rounds);
    /// A chain whose rounds no slice holds together.
    void measure_many_types(const QString &folder);
    void print() const;

private:
    void print_table(const QString &path, const std::vector<Query> &queries, int rounds,
                     bool has_goals);
    void measure_start(const QString &path, int rounds);
    void measure_remembering(const QString &path, int rounds);

    std::vector<Figure> figures_;
    std::map<std::string, std::map<int, double>> all_time_; ///< by query and rounds
};

void Bench::fill_and_measure(const QString &folder, int rounds)
{
    const QString path = QStringLiteral("%1/%2.db").arg(folder).arg(rounds);
    tools::FillOptions options;
    options.rounds = rounds;
    const double filled = milliseconds_of([&] { tools::fill_store(path, options); });
    std::printf("\n%d rounds: filled in %.1f s, %.0f MB\n", rounds, filled / 1000.0,
                static_cast<double>(QFileInfo(path).size()) / 1e6);
    measure(path, rounds);
    QFile::remove(path);
}

void Bench::measure(const QString &path, int rounds)
{
    print_table(path, chain_queries, rounds, true);
    print_table(path, other_queries, rounds, false);
    measure_start(path, rounds);
    measure_remembering(path, rounds);
}

void Bench::print_table(const QString &path, const std::vector<Query> &queries, int rounds,
                        bool has_goals)
{
    std::printf("%-18s%12s%12s%12s%12s  (ms)\n", "", "day", "30 days", "all time", "again");
    const double end = tools::FillOptions().end;
    for (const Query &query : queries) {
        std::printf("%-18s", query.name);
        for (const Span &span : spans) {
            const Time from = span.days > 0.0 ? Time(end - (span.days + 7.0) * day) : std::nullopt;
            const Time to = span.days > 0.0 ? Time(*from + span.days * day) : std::nullopt;
            const double time = first_call(path, query, from, to);
            std::printf("%12.2f", time);
            std::fflush(stdout);
            if (has_goals)
                figures_.push_back(
                    {std::string(query.name) + '_' + span.name + "_ms_at_" + std::to_string(rounds),
                     time, goal_of(query.name, span, rounds)});
            if (has_goals && span.days == 0.0)
                all_time_[query.name][rounds] = time;
        }
        const double again = repeated_call(path, query, {}, {});
        std::printf("%12.3f\n", again);
        if (has_goals)
            figures_.push_back(
                {std::string(query.name) + "_again_ms_at_" + std::to_string(rounds), again, 1.0});
    }
}

void Bench::measure_start(const QString &path, int rounds)
{
    std::vector<double> times;
    for (int run = 0; run < repeats; ++run) {
        data::TallyDb db(path);
        times.push_back(milliseconds_of([&] { db.init_schema(); }));
    }
    std::printf("init_schema %.1f ms\n", fastest(times));
    figures_.push_back({"init_schema_ms_at_" + std::to_string(rounds), fastest(times), 150.0});
}

void Bench::measure_remembering(const QString &path, int rounds)
{
    data::TallyDb db(path);
    db.summary(barbarians, {}, {}, {});
    db.set_setting(QStringLiteral("overlay_x"), QStringLiteral("80"));
    const double time = milliseconds_of([&] { db.summary(barbarians, {}, {}, {}); });
    std::printf("summary after a setting %.3f ms\n", time);
    figures_.push_back({"summary_after_a_setting_ms_at_" + std::to_string(rounds), time, 1.0});
}

void Bench::measure_many_types(const QString &folder)
{
    data::TallyDb db(folder + QStringLiteral("/types.db"));
    db.init_schema();
    data::BattleReport chain;
    chain.rounds.resize(100'000);
    for (std::size_t type = 0; type < chain.rounds.size(); ++type)
        chain.rounds[type].npc_btype = static_cast<double>(type);
    const double time =
        milliseconds_of([&] { db.insert_report(QStringLiteral("chain"), chain, 1.0); });
    std::printf("\nchain of 100000 types stored in %.1f ms\n", time);
    figures_.push_back({"insert_of_100000_types_ms", time, 5000.0});
}

void Bench::print() const
{
    std::printf("\n");
    for (const Figure &figure : figures_)
        print_figure(figure.name, figure.value, Goal::at_most, figure.goal);
    for (const auto &[query, times] : all_time_) {
        if (times.count(100'000) != 0 && times.count(1'000'000) != 0)
            print_figure(query + "_growth_from_100000_to_1000000",
                         times.at(1'000'000) / times.at(100'000), Goal::at_most, 12.0);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir scratch(QCoreApplication::applicationDirPath() +
                                QStringLiteral("/queries-XXXXXX"));
    QStringList words = application.arguments().mid(1);
    if (words.isEmpty())
        words = {QStringLiteral("100000"), QStringLiteral("1000000")};
    Bench bench;
    for (const QString &word : words) {
        if (QFile::exists(word))
            bench.measure(word, data::TallyDb(word).report_count(std::nullopt));
        else
            bench.fill_and_measure(scratch.path(), std::max(word.toInt(), 1));
    }
    bench.measure_many_types(scratch.path());
    bench.print();
}
