#include "store/tally_db.h"

#include "store/sql_values.h"

namespace tally::data {

std::vector<PlayerRow> TallyDb::players() const
{
    std::vector<PlayerRow> accounts;
    auto rows = exec_prepared(connection(), QStringLiteral(R"sql(
        SELECT player_id, MAX(player_name) AS name, COUNT(DISTINCT file_name) AS n
        FROM reports
        WHERE player_id IS NOT NULL
        GROUP BY player_id
        ORDER BY n DESC)sql"));
    while (rows.next())
        accounts.push_back(
            {number_in(rows.value(0)), rows.value(1).toString(), rows.value(2).toInt()});
    return accounts;
}

int TallyDb::chain_file_count() const
{
    return single_int(QStringLiteral("SELECT COUNT(DISTINCT file_name) FROM reports"));
}

int TallyDb::report_count(std::optional<double> btype) const
{
    if (btype)
        return single_int(QStringLiteral("SELECT COUNT(*) FROM reports WHERE npc_btype = ?"),
                          {*btype});
    return single_int(QStringLiteral("SELECT COUNT(*) FROM reports"));
}

} // namespace tally::data
