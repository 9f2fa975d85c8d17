#include "support/chain_reference.h"

#include <QDateTime>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

namespace tally::test {

namespace {

std::optional<double> number(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toDouble());
}

int honor_of(const StoredRound &round)
{
    const double level = round.level.value_or(0.0);
    if (round.loot.empty())
        return 0;
    if (level >= 41.0 && level <= 45.0)
        return 10;
    if (level >= 46.0 && level <= 50.0)
        return 16;
    return level >= 51.0 && level <= 55.0 ? 20 : 0;
}

bool in_span(const StoredRound &round, const ChainQuestion &question)
{
    const auto time = round.time();
    return (!question.from || (time && *time >= *question.from)) &&
           (!question.to || (time && *time < *question.to)) &&
           (!question.player || round.player == question.player);
}

enum class Category { win, free_ap, tactical, escape };

Category category_of(const StoredRound &round, const std::vector<const StoredRound *> &all)
{
    const auto met = [&](const auto &condition) {
        return round.ctid && round.time() &&
               std::any_of(all.begin(), all.end(), [&](const StoredRound *other) {
                   return other->ctid == round.ctid && other->time() && condition(*other);
               });
    };
    if (round.loot_sum() > 0.0)
        return met([&](const StoredRound &other) {
            return *other.time() < *round.time() && other.loot_sum() == 0.0;
        })
                   ? Category::free_ap
                   : Category::win;
    return round.loot_sum() == 0.0 &&
                   met([&](const StoredRound &other) { return *other.time() > *round.time(); })
               ? Category::tactical
               : Category::escape;
}

} // namespace

double StoredRound::loot_sum() const
{
    double sum = 0.0;
    for (const StoredLoot &item : loot)
        sum += item.value.value_or(0.0);
    return sum;
}

ChainReference::ChainReference(const QSqlDatabase &db)
{
    QSqlQuery rows(db);
    rows.exec(QStringLiteral(
        "SELECT file_name, npc_btype, level, npc_ctid, file_mtime, chain_start_time, "
        "chain_end_time, hero_id_1, hero_id_2, player_id, player_name, is_fort_round, is_free_ap, "
        "round_no FROM reports"));
    QSqlQuery items(db);
    items.prepare(QStringLiteral("SELECT item_type, item_subtype, value FROM loot "
                                 "WHERE file_name = ? AND round_no = ? ORDER BY id"));
    while (rows.next()) {
        StoredRound round{
            rows.value(0).toString(), number(rows.value(1)),     number(rows.value(2)),
            number(rows.value(3)),    number(rows.value(4)),     number(rows.value(5)),
            number(rows.value(6)),    number(rows.value(7)),     number(rows.value(8)),
            number(rows.value(9)),    rows.value(10).toString(), rows.value(11).toInt(),
            rows.value(12).toInt()};
        items.bindValue(0, rows.value(0));
        items.bindValue(1, rows.value(13));
        items.exec();
        while (items.next())
            round.loot.push_back(
                {number(items.value(0)), number(items.value(1)), number(items.value(2))});
        rounds_.push_back(std::move(round));
    }
}

std::vector<const StoredRound *> ChainReference::filtered(const ChainQuestion &question) const
{
    std::vector<const StoredRound *> rounds;
    for (const StoredRound &round : rounds_) {
        const bool fits_mode = question.free_ap_mode == 0 ||
                               (question.free_ap_mode == 1 && round.is_free == 0) ||
                               (question.free_ap_mode == 2 && round.is_free == 1);
        if (round.btype == question.btype && round.is_fort == 0 && fits_mode &&
            in_span(round, question))
            rounds.push_back(&round);
    }
    return rounds;
}

data::ChainSummary ChainReference::summary(const ChainQuestion &question) const
{
    data::ChainSummary summary;
    const auto rounds = filtered(question);
    std::set<QString> files;
    std::set<QString> with_free_ap;
    for (const StoredRound *round : rounds) {
        const Category category = category_of(*round, rounds);
        ++summary.battles;
        summary.wins += category == Category::win;
        summary.free_ap += category == Category::free_ap;
        summary.tactical += category == Category::tactical;
        summary.escapes += category == Category::escape;
        summary.honor += honor_of(*round);
        files.insert(round->file);
        if (category == Category::free_ap)
            with_free_ap.insert(round->file);
        if (round->mtime) {
            summary.min_t = std::min(summary.min_t.value_or(*round->mtime), *round->mtime);
            summary.max_t = std::max(summary.max_t.value_or(*round->mtime), *round->mtime);
        }
    }
    summary.kills = summary.wins + summary.free_ap;
    summary.engaged = summary.kills + summary.tactical;
    summary.files = static_cast<int>(files.size());
    summary.chains_ap_only = static_cast<int>(files.size() - with_free_ap.size());
    add_durations(summary, question);
    return summary;
}

void ChainReference::add_durations(data::ChainSummary &summary, const ChainQuestion &question) const
{
    std::map<QString, std::pair<double, double>> spans;
    for (const StoredRound &round : rounds_) {
        if (round.btype != question.btype || !round.start || !round.end ||
            !in_span(round, question))
            continue;
        auto &[start, end] = spans.try_emplace(round.file, *round.start, *round.end).first->second;
        start = std::min(start, *round.start);
        end = std::max(end, *round.end);
    }
    for (const auto &[file, span] : spans)
        summary.total_dur += span.second - span.first;
    summary.n_chains = static_cast<int>(spans.size());
    if (!spans.empty())
        summary.avg_dur = summary.total_dur / static_cast<double>(spans.size());
}

std::optional<data::BestChain> ChainReference::best_chain(const ChainQuestion &question) const
{
    std::map<QString, int> wins;
    for (const StoredRound *round : filtered(question))
        wins[round->file] += round->loot_sum() > 0.0;
    std::optional<data::BestChain> best;
    std::optional<double> best_dur;
    for (const auto &[file, count] : wins) {
        std::optional<double> start;
        std::optional<double> end;
        for (const StoredRound &round : rounds_) {
            if (round.file != file)
                continue;
            if (round.start)
                start = std::min(start.value_or(*round.start), *round.start);
            if (round.end)
                end = std::max(end.value_or(*round.end), *round.end);
        }
        const auto dur = start && end ? std::optional(*end - *start) : std::nullopt;
        if (count > 0 && (!best || count > best->wins || (count == best->wins && dur < best_dur))) {
            best = {file, count, dur.value_or(0.0), start};
            best_dur = dur;
        }
    }
    return best;
}

std::vector<data::LootStat> ChainReference::loot_stats(const ChainQuestion &question) const
{
    struct Sum {
        double pieces = 0.0;
        int battles = 0;
    };
    std::map<std::pair<std::optional<double>, std::optional<double>>, Sum> sums;
    for (const StoredRound *round : filtered(question)) {
        std::set<std::pair<std::optional<double>, std::optional<double>>> dropped;
        for (const StoredLoot &item : round->loot) {
            const std::pair id(item.item_type, item.item_subtype);
            sums[id].pieces += item.value.value_or(0.0);
            sums[id].battles += dropped.insert(id).second;
        }
    }
    std::vector<data::LootStat> stats;
    for (const auto &[id, sum] : sums) {
        data::LootStat stat;
        std::tie(stat.item_type, stat.item_subtype) = id;
        stat.pieces = static_cast<int>(sum.pieces);
        stat.total_value = static_cast<qint64>(stat.pieces + 0.5);
        stat.battles = sum.battles;
        stats.push_back(stat);
    }
    return stats;
}

std::array<int, 24> ChainReference::hourly(const ChainQuestion &question,
                                           const QTimeZone &zone) const
{
    std::set<std::pair<int, QString>> chains;
    for (const StoredRound *round : filtered(question)) {
        if (round->start)
            chains.emplace(
                QDateTime::fromMSecsSinceEpoch(std::llround(*round->start * 1000.0), zone)
                    .time()
                    .hour(),
                round->file);
    }
    std::array<int, 24> counts = {};
    for (const auto &[hour, file] : chains)
        ++counts[static_cast<std::size_t>(hour)];
    return counts;
}

std::map<std::pair<int, int>, int> ChainReference::hero_pairs(const ChainQuestion &question) const
{
    std::set<std::tuple<int, int, QString>> chains;
    for (const StoredRound *round : filtered(question)) {
        if (round->hero_1 && round->hero_2)
            chains.emplace(static_cast<int>(*round->hero_1), static_cast<int>(*round->hero_2),
                           round->file);
    }
    std::map<std::pair<int, int>, int> pairs;
    for (const auto &[hero_1, hero_2, file] : chains)
        ++pairs[{hero_1, hero_2}];
    return pairs;
}

std::map<double, int> ChainReference::chains_of_players() const
{
    std::set<std::pair<double, QString>> chains;
    for (const StoredRound &round : rounds_) {
        if (round.player)
            chains.emplace(*round.player, round.file);
    }
    std::map<double, int> counts;
    for (const auto &[player, file] : chains)
        ++counts[player];
    return counts;
}

int ChainReference::honor_since(double since) const
{
    int honor = 0;
    for (const StoredRound &round : rounds_) {
        const auto time = round.mtime ? round.mtime : round.end ? round.end : round.start;
        if (time && *time > since)
            honor += honor_of(round);
    }
    return honor;
}

} // namespace tally::test
