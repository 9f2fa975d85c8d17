#include "data/store/player_rows.h"

#include "data/store/sql_values.h"
#include "data/store/store_connection.h"

#include <algorithm>
#include <utility>

namespace tally::data {

std::vector<PlayerRow> player_rows(const StoreConnection &store, const QString &sql,
                                   const QVariantList &params)
{
    std::vector<PlayerRow> accounts;
    auto rows = store.exec(sql, params);
    while (rows.next())
        accounts.push_back(
            {number_in(rows.value(0)), rows.value(1).toString(), rows.value(2).toInt()});
    return accounts;
}

void add_player_rows(std::vector<PlayerRow> &players, const std::vector<PlayerRow> &others)
{
    if (players.empty()) {
        players = others;
        return;
    }
    for (const PlayerRow &other : others) {
        const auto known =
            std::find_if(players.begin(), players.end(), [&other](const PlayerRow &player) {
                return player.player_id == other.player_id;
            });
        if (known == players.end()) {
            players.push_back(other);
            continue;
        }
        known->n += other.n;
        // As the database compares them.
        if (known->name.toUtf8() < other.name.toUtf8())
            known->name = other.name;
    }
    std::sort(players.begin(), players.end(), [](const PlayerRow &one, const PlayerRow &two) {
        return std::pair(-one.n, one.player_id) < std::pair(-two.n, two.player_id);
    });
}

} // namespace tally::data
