#include "data/store/loot_sums.h"

#include "data/master/master_cache.h"
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

std::vector<LootStat> with_item_facts(const std::vector<LootSum> &sums)
{
    std::vector<LootStat> stats;
    stats.reserve(sums.size());
    for (const LootSum &sum : sums) {
        const ItemInfo item = MasterCache::instance().item(sum.item_type, sum.item_subtype);
        // A sum of fractions depends on the order in which they are added up: the nearest whole
        // number does not.
        const double rounded = std::round(sum.pieces);
        const int pieces = saturated(rounded);
        const bool fits = to_int(rounded).has_value();
        stats.push_back(
            {.item_type = sum.item_type,
             .item_subtype = sum.item_subtype,
             .name = item.name,
             .unit_value = item.unit_value,
             .unit = item.unit,
             .icon = item.icon,
             .pieces = pieces,
             .total_value = saturated<qint64>((fits ? pieces : sum.pieces) * item.unit_value + 0.5),
             .battles = saturated(static_cast<double>(sum.battles))});
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

LootEntry with_item_facts(LootEntry entry)
{
    const ItemInfo item = MasterCache::instance().item(entry.item_type, entry.item_subtype);
    entry.name = item.name;
    entry.unit_value = item.unit_value;
    entry.unit = item.unit;
    entry.icon = item.icon;
    return entry;
}

} // namespace tally::data
