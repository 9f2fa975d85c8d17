#include "data/store/player_rows.h"

#include "data/store/sql_values.h"
#include "data/store/store_connection.h"

namespace tally::data {

std::vector<PlayerRow> player_rows(const StoreConnection &store, const QString &table,
                                   const QString &mail)
{
    std::vector<PlayerRow> accounts;
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT player_id, MAX(player_name) AS name, COUNT(DISTINCT %1) AS n
        FROM %2
        WHERE player_id IS NOT NULL
        GROUP BY player_id
        ORDER BY n DESC)sql")
                               .arg(mail, table));
    while (rows.next())
        accounts.push_back(
            {number_in(rows.value(0)), rows.value(1).toString(), rows.value(2).toInt()});
    return accounts;
}

} // namespace tally::data
