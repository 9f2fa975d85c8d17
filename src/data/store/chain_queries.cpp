#include "data/store/chain_slice.h"
#include "data/store/loot_sums.h"
#include "data/store/remembered.h"
#include "data/store/sql_values.h"

#include <QDateTime>
#include <QTimeZone>

#include <unordered_map>

namespace tally::data {

// A query that only filters and groups reads the chains' slices just as well as the rounds: it is
// the same text with another table. Where the two differ, the text over the rounds is the
// definition of the result; it also answers while another program's changes are not sliced yet.

namespace {

QVariantList twice(double btype)
{
    return {btype, btype};
}

/// What a result of a filtered query depends on.
QVariantList question_params(double btype, const ChainSqlFilter &filter)
{
    return QVariantList{btype, filter.sql} + filter.params;
}

struct ItemIdHash {
    std::size_t operator()(const std::pair<std::optional<double>, std::optional<double>> &id) const
    {
        return std::hash<std::optional<double>>()(id.first) * 31 +
               std::hash<std::optional<double>>()(id.second);
    }
};

} // namespace

ChainSqlFilter TallyDb::chain_filter(const QString &prefix, std::optional<double> from,
                                     std::optional<double> to, std::optional<double> player) const
{
    ChainSqlFilter filter;
    const auto add = [&](const char *condition) {
        filter.sql += QString::fromLatin1(condition).replace(QStringLiteral("%1"), prefix);
    };
    if (from) {
        add(" AND COALESCE(%1chain_start_time, %1file_mtime) >= ?");
        filter.params << *from;
    }
    if (to) {
        add(" AND COALESCE(%1chain_start_time, %1file_mtime) < ?");
        filter.params << *to;
    }
    if (player) {
        add(" AND %1player_id = ?");
        filter.params << *player;
    }
    add(" AND COALESCE(%1is_fort_round, 0) = 0");
    const int mode = free_ap_mode;
    if (mode == 1)
        add(" AND COALESCE(%1is_free_ap, 0) = 0");
    else if (mode == 2)
        add(" AND COALESCE(%1is_free_ap, 0) = 1");
    return filter;
}

TallyDb::ChainSource TallyDb::chain_source() const
{
    // Ids are counted faster than names.
    if (slices_complete())
        return {QStringLiteral("chain_slices"), QStringLiteral("COALESCE(first_id, id)")};
    return {QStringLiteral("reports"), QStringLiteral("file_name")};
}

std::optional<BestChain> TallyDb::best_chain(double btype, std::optional<double> from,
                                             std::optional<double> to,
                                             std::optional<double> player) const
{
    const ChainSqlFilter filter = chain_filter(QStringLiteral("r."), from, to, player);
    static const QString over_rounds = QStringLiteral(R"sql(
        WITH round_wins AS (
          SELECT r.file_name, r.round_no, IFNULL(SUM(l.value),0) AS lsum
          FROM reports r
          LEFT JOIN loot l ON l.file_name = r.file_name AND l.round_no = r.round_no
          WHERE (? IS NULL OR r.npc_btype = ?)%1
          GROUP BY r.file_name, r.round_no
        ), file_stats AS (
          SELECT rw.file_name,
                 SUM(CASE WHEN rw.lsum > 0 THEN 1 ELSE 0 END) AS wins,
                 (SELECT MIN(chain_start_time) FROM reports
                  WHERE file_name = rw.file_name) AS start_time,
                 (SELECT MAX(chain_end_time) FROM reports
                  WHERE file_name = rw.file_name) AS end_time
          FROM round_wins rw
          GROUP BY rw.file_name
        )
        SELECT file_name, wins, (end_time - start_time) AS dur, start_time
        FROM file_stats
        WHERE wins > 0
        ORDER BY wins DESC, dur ASC
        LIMIT 1)sql");
    static const QString over_slices = QStringLiteral(R"sql(
        WITH file_wins AS MATERIALIZED (
          SELECT r.file_name, SUM(r.wins) AS wins
          FROM chain_slices r
          WHERE (? IS NULL OR r.npc_btype = ?)%1
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
        LIMIT 1)sql");
    const auto compute = [&]() -> std::optional<BestChain> {
        auto row = exec_prepared(connection(),
                                 (slices_complete() ? over_slices : over_rounds).arg(filter.sql),
                                 twice(btype) + filter.params);
        if (!row.next())
            return std::nullopt;
        return BestChain{row.value(0).toString(), row.value(1).toInt(),
                         number_or_zero(row.value(2)), number_in(row.value(3))};
    };
    return remembered<std::optional<BestChain>>(QStringLiteral("best_chain"),
                                                question_params(btype, filter), compute);
}

std::optional<double> TallyDb::last_chain(double btype, std::optional<double> player) const
{
    const ChainSqlFilter filter = chain_filter({}, {}, {}, player);
    const auto compute = [&]() -> std::optional<double> {
        auto row = exec_prepared(connection(),
                                 QStringLiteral(R"sql(
            SELECT MAX(COALESCE(chain_start_time, file_mtime))
            FROM %1
            WHERE (? IS NULL OR npc_btype = ?)%2)sql")
                                     .arg(chain_source().table, filter.sql),
                                 twice(btype) + filter.params);
        return row.next() ? number_in(row.value(0)) : std::nullopt;
    };
    return remembered<std::optional<double>>(QStringLiteral("last_chain"),
                                             question_params(btype, filter), compute);
}

std::vector<LootSum> TallyDb::sliced_loot_sums(const QString &filter,
                                               const QVariantList &params) const
{
    std::unordered_map<std::pair<std::optional<double>, std::optional<double>>, LootSum, ItemIdHash>
        sums;
    auto rows = exec_prepared(connection(),
                              QStringLiteral(R"sql(
        SELECT l.items
        FROM chain_slices r
        JOIN chain_slice_loot l ON l.slice_id = r.id
        WHERE (? IS NULL OR r.npc_btype = ?)%1)sql")
                                  .arg(filter),
                              params);
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

std::vector<LootStat> TallyDb::loot_stats(double btype, std::optional<double> from,
                                          std::optional<double> to,
                                          std::optional<double> player) const
{
    const ChainSqlFilter filter = chain_filter(QStringLiteral("r."), from, to, player);
    static const QString over_rounds = QStringLiteral(R"sql(
        SELECT l.item_type, l.item_subtype,
               SUM(l.value) AS sztuki,
               COUNT(DISTINCT l.file_name || '/' || l.round_no) AS bitwy
        FROM loot l
        JOIN reports r ON r.file_name = l.file_name AND r.round_no = l.round_no
        WHERE (? IS NULL OR r.npc_btype = ?)%1
        GROUP BY l.item_type, l.item_subtype)sql");
    const QVariantList params = twice(btype) + filter.params;
    const auto compute = [&] {
        return slices_complete() ? sliced_loot_sums(filter.sql, params)
                                 : loot_sums(over_rounds.arg(filter.sql), params);
    };
    return loot_stats_of(remembered<std::vector<LootSum>>(QStringLiteral("loot_stats"),
                                                          question_params(btype, filter), compute));
}

std::array<int, 24> TallyDb::hourly(double btype, std::optional<double> from,
                                    std::optional<double> to, std::optional<double> player) const
{
    const ChainSqlFilter filter = chain_filter({}, from, to, player);
    const auto compute = [&] {
        const ChainSource source = chain_source();
        std::array<int, 24> chains = {};
        auto rows = exec_prepared(connection(),
                                  QStringLiteral(R"sql(
            SELECT CAST(strftime('%H', chain_start_time, 'unixepoch', 'localtime') AS INTEGER) AS h,
                   COUNT(DISTINCT %1) AS n
            FROM %2
            WHERE (? IS NULL OR npc_btype = ?) AND chain_start_time IS NOT NULL%3
            GROUP BY h)sql")
                                      .arg(source.chain, source.table, filter.sql),
                                  twice(btype) + filter.params);
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
    return remembered<std::array<int, 24>>(QStringLiteral("hourly"),
                                           question_params(btype, filter) +
                                               QVariantList{QTimeZone::systemTimeZoneId(), offset},
                                           compute);
}

std::vector<HeroPair> TallyDb::hero_pairs(double btype, std::optional<double> from,
                                          std::optional<double> to,
                                          std::optional<double> player) const
{
    const ChainSqlFilter filter = chain_filter({}, from, to, player);
    const auto compute = [&] {
        const ChainSource source = chain_source();
        std::vector<HeroPair> pairs;
        auto rows = exec_prepared(connection(),
                                  QStringLiteral(R"sql(
            SELECT hero_id_1, hero_id_2, COUNT(DISTINCT %1) AS chains
            FROM %2
            WHERE (? IS NULL OR npc_btype = ?)%3
              AND hero_id_1 IS NOT NULL AND hero_id_2 IS NOT NULL
            GROUP BY hero_id_1, hero_id_2
            ORDER BY chains DESC)sql")
                                      .arg(source.chain, source.table, filter.sql),
                                  twice(btype) + filter.params);
        while (rows.next())
            pairs.push_back({saturated(number_or_zero(rows.value(0))),
                             saturated(number_or_zero(rows.value(1))), rows.value(2).toInt()});
        return pairs;
    };
    return remembered<std::vector<HeroPair>>(QStringLiteral("hero_pairs"),
                                             question_params(btype, filter), compute);
}

} // namespace tally::data
