#include "data/store/forts.h"

#include "data/store/chain_rounds.h"
#include "data/store/loot_sums.h"
#include "data/store/remembered.h"
#include "data/store/sql_conditions.h"
#include "data/store/sql_values.h"

#include <QHash>

#include <algorithm>
#include <map>

namespace tally::data {

namespace {

// SQLite takes 32,766 values in one statement.
constexpr std::size_t max_values = 30'000;

SqlConditions fort_conditions(const QString &alias, std::optional<double> from,
                              std::optional<double> to, int min_level)
{
    SqlConditions conditions;
    conditions.add(alias + QStringLiteral("event_time >= ?"), from);
    conditions.add(alias + QStringLiteral("event_time <= ?"), to);
    if (min_level >= 1)
        conditions.add(alias + QStringLiteral("fort_level >= ?"), QVariant(min_level));
    conditions.add(alias + QStringLiteral("event_time IS NOT NULL"));
    return conditions;
}

} // namespace

std::vector<FortRow> fort_list(const StoreConnection &store, std::optional<double> from,
                               std::optional<double> to, int min_level, int limit)
{
    const SqlConditions conditions = fort_conditions({}, from, to, min_level);
    const ReadSnapshot snapshot(store);
    std::vector<FortRow> forts;
    {
        auto rows = store.exec(QStringLiteral(R"sql(
            SELECT file_name, event_time, fort_level, tile_x, tile_y, damage_percent
            FROM fort_reports
            WHERE %1
            ORDER BY event_time DESC
            LIMIT ?)sql")
                                   .arg(conditions.sql()),
                               conditions.params + QVariantList{limit});
        while (rows.next())
            forts.push_back({rows.value(0).toString(),
                             number_or_zero(rows.value(1)),
                             rows.value(2).toInt(),
                             int_in(rows.value(3)),
                             int_in(rows.value(4)),
                             rows.value(5).toInt(),
                             {}});
    }
    for (std::size_t first = 0; first < forts.size(); first += max_values) {
        const std::size_t last = std::min(first + max_values, forts.size());
        QHash<QString, std::size_t> place_of;
        QVariantList names;
        for (std::size_t place = first; place < last; ++place) {
            place_of.insert(forts[place].file_name, place);
            names << forts[place].file_name;
        }
        auto rows = store.exec(QStringLiteral(R"sql(
            SELECT file_name, item_type, item_subtype, value
            FROM fort_loot
            WHERE file_name IN (%1)
            ORDER BY id)sql")
                                   .arg(placeholders(names.size())),
                               names);
        while (rows.next())
            forts[place_of.value(rows.value(0).toString())].loot.push_back(
                read_loot_entry(rows, 1));
    }
    return forts;
}

std::vector<LootStat> fort_loot_stats(const StoreConnection &store, std::optional<double> from,
                                      std::optional<double> to, int min_level, int *fights,
                                      const ItemLookup &item_of)
{
    const SqlConditions conditions = fort_conditions(QStringLiteral("fr."), from, to, min_level);
    const auto count = QStringLiteral("SELECT COUNT(*) FROM fort_reports fr WHERE %1");
    return remembered_loot(store, QStringLiteral(R"sql(
        SELECT fl.item_type, fl.item_subtype,
               SUM(fl.value) AS sztuki,
               COUNT(DISTINCT fl.file_name) AS bitwy
        FROM fort_loot fl
        JOIN fort_reports fr ON fr.file_name = fl.file_name
        WHERE %1
        GROUP BY fl.item_type, fl.item_subtype)sql"),
                           count, conditions, fights, item_of);
}

std::optional<FortBattle> fort_battle(const StoreConnection &store, const QString &file_name)
{
    const ReadSnapshot snapshot(store);
    FortBattle battle;
    {
        auto row = store.exec(
            QStringLiteral("SELECT battle_file_name FROM fort_reports WHERE file_name = ?"),
            {file_name});
        battle.battle_file_name = row.next() ? row.value(0).toString() : QString();
    }
    if (battle.battle_file_name.isEmpty())
        return std::nullopt;
    {
        auto row = store.exec(QStringLiteral(R"sql(
            SELECT hero_id_1, hero_id_2, player_name
            FROM reports
            WHERE file_name = ?
            LIMIT 1)sql"),
                              {battle.battle_file_name});
        if (!row.next())
            return std::nullopt;
        battle.hero_id_1 = number_in(row.value(0));
        battle.hero_id_2 = number_in(row.value(1));
        battle.player_name = row.value(2).toString();
    }
    std::map<int, std::vector<LootEntry>> loot = round_loot(store, battle.battle_file_name);
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT round_no, npc_type, level, damage_taken, damage_dealt,
               COALESCE(is_fort_round, 0)
        FROM reports
        WHERE file_name = ?
        ORDER BY round_no)sql"),
                           {battle.battle_file_name});
    while (rows.next()) {
        const int round_no = rows.value(0).toInt();
        battle.rounds.push_back({round_no, number_in(rows.value(1)), number_in(rows.value(2)),
                                 number_in(rows.value(3)), number_in(rows.value(4)),
                                 rows.value(5).toInt() != 0, std::move(loot[round_no])});
    }
    return battle;
}

} // namespace tally::data
