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
    const bool is_number =
        value.typeId() == QMetaType::Double || value.typeId() == QMetaType::LongLong;
    return value.isNull() || !is_number ? std::nullopt : std::optional(value.toDouble());
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

/// How many chains have a round of each key.
template <typename Key>
std::map<Key, int> chains_by(const std::vector<const StoredRound *> &rounds, const auto &key_of)
{
    std::set<std::pair<Key, QString>> chains;
    for (const StoredRound *round : rounds) {
        if (const std::optional<Key> key = key_of(*round))
            chains.emplace(*key, round->file);
    }
    std::map<Key, int> counts;
    for (const auto &[key, file] : chains)
        ++counts[key];
    return counts;
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
    const auto numbers_of = [&db](const QString &sql, const auto &take) {
        QSqlQuery rows(sql, db);
        while (rows.next())
            take(rows, [&rows](int column) { return number(rows.value(column)); });
    };
    std::map<std::pair<QString, QString>, std::vector<StoredLoot>> loot;
    numbers_of(
        QStringLiteral("SELECT quote(file_name), quote(round_no), item_type, item_subtype, value "
                       "FROM loot ORDER BY id"),
        [&](const QSqlQuery &row, const auto &at) {
            loot[{row.value(0).toString(), row.value(1).toString()}].push_back(
                {at(2), at(3), at(4)});
        });
    numbers_of(QStringLiteral("SELECT quote(file_name), npc_btype, level, npc_ctid, file_mtime, "
                              "chain_start_time, chain_end_time, hero_id_1, hero_id_2, player_id, "
                              "is_fort_round, is_free_ap, quote(round_no), file_name FROM reports"),
               [&](const QSqlQuery &row, const auto &at) {
                   const QString file = row.value(13).toString();
                   rounds_.push_back({file, at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8),
                                      at(9), row.value(10).toInt(), row.value(11).toInt(),
                                      loot[{row.value(0).toString(), row.value(12).toString()}]});
               });
}

std::vector<const StoredRound *> ChainReference::filtered(const ChainQuestion &question) const
{
    std::vector<const StoredRound *> rounds;
    for (const StoredRound &round : rounds_) {
        const bool fits_mode = question.ap_source == data::ApSource::all ||
                               (question.ap_source == data::ApSource::paid && round.is_free == 0) ||
                               (question.ap_source == data::ApSource::free && round.is_free == 1);
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
        stat.pieces = static_cast<int>(std::round(sum.pieces));
        stat.total_value = static_cast<qint64>(stat.pieces + 0.5);
        stat.battles = sum.battles;
        stats.push_back(stat);
    }
    return stats;
}

std::array<int, 24> ChainReference::hourly(const ChainQuestion &question,
                                           const QTimeZone &zone) const
{
    std::array<int, 24> counts = {};
    const auto by_hour = chains_by<int>(filtered(question), [&zone](const StoredRound &round) {
        return round.start ? std::optional(QDateTime::fromMSecsSinceEpoch(
                                               std::llround(*round.start * 1000.0), zone)
                                               .time()
                                               .hour())
                           : std::nullopt;
    });
    for (const auto &[hour, chains] : by_hour)
        counts[static_cast<std::size_t>(hour)] = chains;
    return counts;
}

std::map<std::pair<int, int>, int> ChainReference::hero_pairs(const ChainQuestion &question) const
{
    using Pair = std::pair<int, int>;
    return chains_by<Pair>(filtered(question), [](const StoredRound &round) {
        return round.hero_1 && round.hero_2 ? std::optional(Pair(*round.hero_1, *round.hero_2))
                                            : std::nullopt;
    });
}

std::map<double, int> ChainReference::chains_of_players() const
{
    std::vector<const StoredRound *> all;
    for (const StoredRound &round : rounds_)
        all.push_back(&round);
    return chains_by<double>(all, [](const StoredRound &round) { return round.player; });
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
