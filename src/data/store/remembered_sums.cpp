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

std::vector<LootStat> TallyDb::remembered_loot(const QString &sql, const QString &count,
                                               const SqlConditions &conditions, int *fights) const
{
    struct Loot {
        std::vector<LootSum> sums;
        int fights = 0;
    };
    const QString text = sql.arg(conditions.sql());
    const auto compute = [&] {
        Loot loot{loot_sums(text, conditions.params), 0};
        if (fights)
            loot.fights = single_int(count.arg(conditions.sql()), conditions.params);
        return loot;
    };
    const Loot loot = remembered<Loot>(fights ? text + QStringLiteral(" and fights") : text,
                                       conditions.params, compute);
    if (fights)
        *fights = loot.fights;
    return with_item_facts(loot.sums);
}

} // namespace tally::data
