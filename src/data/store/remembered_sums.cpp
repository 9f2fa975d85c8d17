#include "data/store/loot_sums.h"
#include "data/store/remembered.h"
#include "data/store/sql_conditions.h"
#include "data/store/tally_db.h"

namespace tally::data {

std::vector<LootSum> TallyDb::loot_sums(const QString &sql, const QVariantList &params) const
{
    auto rows = exec_prepared(connection(), sql, params);
    return read_loot_sums(rows);
}

int TallyDb::remembered_count(const QString &sql, const SqlConditions &conditions) const
{
    const QString text = sql.arg(conditions.sql());
    return remembered<int>(text, conditions.params,
                           [&] { return single_int(text, conditions.params); });
}

std::vector<LootStat> TallyDb::remembered_loot(const QString &sql,
                                               const SqlConditions &conditions) const
{
    const QString text = sql.arg(conditions.sql());
    return with_item_facts(remembered<std::vector<LootSum>>(
        text, conditions.params, [&] { return loot_sums(text, conditions.params); }));
}

} // namespace tally::data
