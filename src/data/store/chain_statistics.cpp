#include "data/store/chain_statistics.h"

#include "data/store/chain_conditions.h"
#include "data/store/loot_sums.h"
#include "data/store/player_rows.h"
#include "data/store/round_slicer.h"
#include "data/store/running.h"
#include "data/store/sql_values.h"

#include <QDateTime>
#include <QTimeZone>

#include <unordered_map>

namespace tally::data {

namespace {

// Ids are counted faster than names.
const QString chain_id = QStringLiteral("COALESCE(first_id, id)");

using ItemId = std::pair<std::optional<double>, std::optional<double>>;

struct ItemIdHash {
    std::size_t operator()(const ItemId &id) const
    {
        return std::hash<std::optional<double>>()(id.first) * 31 +
               std::hash<std::optional<double>>()(id.second);
    }
};

/// The condition for slices that came after one, for a list of conditions.
struct IdsAfter {
    IdsAfter(const QString &id, qint64 after)
    {
        if (after == 0)
            return;
        sql = QStringLiteral(" AND %1 > ?").arg(id);
        params << after;
    }

    QString sql;
    QVariantList params;
};

struct Contender {
    BestChain chain;
    std::optional<double> duration; ///< one that is missing counts as the shortest

    bool beats(const Contender &other) const
    {
        return std::pair(-chain.wins, duration) < std::pair(-other.chain.wins, other.duration);
    }
};

std::vector<LootSum> sliced_loot_sums(const StoreConnection &store, const ChainSqlFilter &filter)
{
    std::unordered_map<ItemId, LootSum, ItemIdHash> sums;
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT l.items
        FROM chain_slices r
        JOIN chain_slice_loot l ON l.slice_id = r.id
        WHERE %1)sql")
                               .arg(filter.sql),
                           filter.params);
    std::vector<SliceItem> items;
    while (rows.next()) {
        items.clear();
        append_unpacked(rows.value(0).toByteArray(), items);
        for (const SliceItem &item : items) {
            LootSum &sum = sums[{item.item_type, item.item_subtype}];
            sum.item_type = item.item_type;
            sum.item_subtype = item.item_subtype;
            sum.pieces += item.pieces;
            sum.battles += item.rounds;
        }
    }
    std::vector<LootSum> list;
    list.reserve(sums.size());
    for (const auto &[id, sum] : sums)
        list.push_back(sum);
    return list;
}

} // namespace

std::optional<BestChain> best_chain(const StoreConnection &store, const ChainQuestion &question)
{
    const ChainSqlFilter filter = question_conditions(QStringLiteral("r."), question);
    const auto add = [&](std::optional<Contender> &best, qint64 after) {
        const IdsAfter ids(QStringLiteral("r.id"), after);
        auto row = store.exec(QStringLiteral(R"sql(
            WITH file_wins AS MATERIALIZED (
              SELECT r.file_name, SUM(r.wins) AS wins
              FROM chain_slices r
              WHERE %1%2
              GROUP BY r.file_name
            ), file_stats AS (
              SELECT fw.file_name, fw.wins,
                     (SELECT MIN(chain_start_time) FROM chain_slices
                      WHERE file_name = fw.file_name) AS start_time,
                     (SELECT MAX(chain_end_time) FROM chain_slices
                      WHERE file_name = fw.file_name) AS end_time
              FROM file_wins fw
              WHERE fw.wins > 0 AND fw.wins = (SELECT MAX(wins) FROM file_wins)
            )
            SELECT file_name, wins, (end_time - start_time) AS dur, start_time
            FROM file_stats
            ORDER BY dur ASC
            LIMIT 1)sql")
                                  .arg(filter.sql, ids.sql),
                              filter.params + ids.params);
        if (!row.next())
            return;
        const Contender contender{{row.value(0).toString(), row.value(1).toInt(),
                                   number_or_zero(row.value(2)), number_in(row.value(3))},
                                  number_in(row.value(2))};
        if (!best || contender.beats(*best))
            best = contender;
    };
    const auto best = running_over_slices<std::optional<Contender>>(
        store, QStringLiteral("best_chain") + filter.sql, filter.params, add);
    return best ? std::optional(best->chain) : std::nullopt;
}

std::optional<double> last_chain(const StoreConnection &store, const ChainQuestion &question)
{
    const ChainSqlFilter filter = question_conditions({}, question);
    const auto compute = [&]() -> std::optional<double> {
        auto row = store.exec(QStringLiteral(R"sql(
            SELECT MAX(COALESCE(chain_start_time, file_mtime))
            FROM chain_slices
            WHERE %1)sql")
                                  .arg(filter.sql),
                              filter.params);
        return row.next() ? number_in(row.value(0)) : std::nullopt;
    };
    return remembered_of_slices<std::optional<double>>(
        store, QStringLiteral("last_chain") + filter.sql, filter.params, compute);
}

std::vector<LootStat> loot_stats(const StoreConnection &store, const ChainQuestion &question,
                                 const ItemLookup &item_of)
{
    const ChainSqlFilter filter = question_conditions(QStringLiteral("r."), question);
    return loot_stats_of(remembered_of_slices<std::vector<LootSum>>(
                             store, QStringLiteral("loot_stats") + filter.sql, filter.params,
                             [&] { return sliced_loot_sums(store, filter); }),
                         item_of);
}

std::array<int, 24> hourly(const StoreConnection &store, const ChainQuestion &question)
{
    const ChainSqlFilter filter = question_conditions({}, question);
    const auto compute = [&] {
        std::array<int, 24> chains = {};
        auto rows = store.exec(QStringLiteral(R"sql(
            SELECT CAST(strftime('%H', chain_start_time, 'unixepoch', 'localtime') AS INTEGER) AS h,
                   COUNT(DISTINCT %1) AS n
            FROM chain_slices
            WHERE %2 AND chain_start_time IS NOT NULL
            GROUP BY h)sql")
                                   .arg(chain_id, filter.sql),
                               filter.params);
        while (rows.next()) {
            const int hour = int_in(rows.value(0)).value_or(-1);
            if (hour >= 0 && hour < 24)
                chains[static_cast<std::size_t>(hour)] = rows.value(1).toInt();
        }
        return chains;
    };
    // Asking for the present offset also lets the C library, whose local time SQLite uses, notice
    // that the user has changed his time zone.
    const int offset = QDateTime::currentDateTime().offsetFromUtc();
    return remembered_of_slices<std::array<int, 24>>(
        store, QStringLiteral("hourly") + filter.sql,
        filter.params + QVariantList{QTimeZone::systemTimeZoneId(), offset}, compute);
}

std::vector<HeroPair> hero_pairs(const StoreConnection &store, const ChainQuestion &question)
{
    const ChainSqlFilter filter = question_conditions({}, question);
    const auto compute = [&] {
        std::vector<HeroPair> pairs;
        auto rows = store.exec(QStringLiteral(R"sql(
            SELECT hero_id_1, hero_id_2, COUNT(DISTINCT %1) AS chains
            FROM chain_slices
            WHERE %2 AND hero_id_1 IS NOT NULL AND hero_id_2 IS NOT NULL
            GROUP BY hero_id_1, hero_id_2
            ORDER BY chains DESC)sql")
                                   .arg(chain_id, filter.sql),
                               filter.params);
        while (rows.next())
            pairs.push_back({saturated(number_or_zero(rows.value(0))),
                             saturated(number_or_zero(rows.value(1))), rows.value(2).toInt()});
        return pairs;
    };
    return remembered_of_slices<std::vector<HeroPair>>(
        store, QStringLiteral("hero_pairs") + filter.sql, filter.params, compute);
}

std::vector<PlayerRow> players(const StoreConnection &store)
{
    const auto add = [&](std::vector<PlayerRow> &players, qint64 after) {
        const IdsAfter ids(QStringLiteral("id"), after);
        const QString sql = QStringLiteral(R"sql(
            SELECT player_id, MAX(player_name) AS name, COUNT(DISTINCT %1) AS n
            FROM chain_slices
            WHERE player_id IS NOT NULL%2
            GROUP BY player_id
            ORDER BY n DESC, player_id)sql")
                                .arg(chain_id, ids.sql);
        add_player_rows(players, player_rows(store, sql, ids.params));
    };
    return running_over_slices<std::vector<PlayerRow>>(store, QStringLiteral("players"), {}, add);
}

int chain_file_count(const StoreConnection &store)
{
    return remembered_of_slices<int>(store, QStringLiteral("chain_file_count"), {}, [&] {
        return store.single_int(
            QStringLiteral("SELECT COUNT(DISTINCT %1) FROM chain_slices").arg(chain_id));
    });
}

int report_count(const StoreConnection &store, std::optional<double> btype)
{
    return remembered<int>(store, QStringLiteral("report_count"), {nullable(btype)}, [&] {
        if (btype)
            return store.single_int(
                QStringLiteral("SELECT COUNT(*) FROM reports WHERE npc_btype = ?"), {*btype});
        return store.single_int(QStringLiteral("SELECT COUNT(*) FROM reports"));
    });
}

} // namespace tally::data
