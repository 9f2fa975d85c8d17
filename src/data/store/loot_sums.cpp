#include "data/store/loot_sums.h"

#include "data/store/remembered.h"
#include "data/store/sql_conditions.h"
#include "data/store/sql_values.h"

#include <cmath>

namespace tally::data {

namespace {

struct LootOfFights {
    std::vector<LootSum> sums;
    int fights = 0;
};

std::vector<LootSum> loot_sums(const StoreConnection &store, const QString &sql,
                               const QVariantList &params)
{
    std::vector<LootSum> sums;
    auto rows = store.exec(sql, params);
    while (rows.next())
        sums.push_back({number_in(rows.value(0)), number_in(rows.value(1)),
                        rows.value(2).toDouble(), rows.value(3).toLongLong()});
    return sums;
}

} // namespace

std::vector<LootStat> remembered_loot(const StoreConnection &store, const QString &sql,
                                      const QString &count, const SqlConditions &conditions,
                                      int *fights, const ItemLookup &item_of)
{
    const QString text = sql.arg(conditions.sql());
    const auto compute = [&] {
        LootOfFights loot{loot_sums(store, text, conditions.params), 0};
        if (fights)
            loot.fights = store.single_int(count.arg(conditions.sql()), conditions.params);
        return loot;
    };
    const auto loot = remembered<LootOfFights>(
        store, fights ? text + QStringLiteral(" and fights") : text, conditions.params, compute);
    if (fights)
        *fights = loot.fights;
    return loot_stats_of(loot.sums, item_of);
}

std::vector<LootStat> loot_stats_of(const std::vector<LootSum> &sums, const ItemLookup &item_of)
{
    std::vector<LootStat> stats;
    stats.reserve(sums.size());
    for (const LootSum &sum : sums) {
        // A sum of fractions depends on the order in which they are added up: the nearest whole
        // number does not.
        const double rounded = std::round(sum.pieces);
        const int pieces = saturated(rounded);
        const bool fits = to_int(rounded).has_value();
        LootStat stat;
        stat.item_type = sum.item_type;
        stat.item_subtype = sum.item_subtype;
        stat = with_item_facts(std::move(stat), item_of);
        stat.pieces = pieces;
        stat.total_value = saturated<qint64>((fits ? pieces : sum.pieces) * stat.unit_value + 0.5);
        stat.battles = saturated(static_cast<double>(sum.battles));
        stats.push_back(std::move(stat));
    }
    return stats;
}

LootEntry read_loot_entry(const QSqlQuery &row, int first_column)
{
    LootEntry entry;
    entry.item_type = number_in(row.value(first_column));
    entry.item_subtype = number_in(row.value(first_column + 1));
    entry.value = number_in(row.value(first_column + 2));
    return entry;
}

} // namespace tally::data
