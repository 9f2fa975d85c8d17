#include "data/store/loot_sums.h"

#include "data/master/item_facts.h"
#include "data/store/sql_values.h"

#include <cmath>

namespace tally::data {

std::vector<LootSum> read_loot_sums(QSqlQuery &rows)
{
    std::vector<LootSum> sums;
    while (rows.next())
        sums.push_back({number_in(rows.value(0)), number_in(rows.value(1)),
                        rows.value(2).toDouble(), rows.value(3).toLongLong()});
    return sums;
}

std::vector<LootStat> loot_stats_of(const std::vector<LootSum> &sums)
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
        stat = with_item_facts(std::move(stat));
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
