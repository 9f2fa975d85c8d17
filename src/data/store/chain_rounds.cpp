#include "data/store/chain_rounds.h"

#include "data/store/chain_conditions.h"
#include "data/store/loot_sums.h"
#include "data/store/sql_values.h"
#include "data/store/store_connection.h"

#include <algorithm>
#include <map>

namespace tally::data {

std::map<int, std::vector<LootEntry>> round_loot(const StoreConnection &store,
                                                 const QString &file_name)
{
    std::map<int, std::vector<LootEntry>> loot;
    auto select = store.kept(QStringLiteral("SELECT round_no, item_type, item_subtype, value "
                                            "FROM loot WHERE file_name = ? ORDER BY id"));
    QSqlQuery &rows = select.exec({file_name});
    while (rows.next())
        loot[rows.value(0).toInt()].push_back(read_loot_entry(rows, 1));
    return loot;
}

std::vector<ChainRound> rounds_of(const StoreConnection &store, const QString &file_name,
                                  const ItemLookup &item_of)
{
    std::map<int, std::vector<LootEntry>> loot = round_loot(store, file_name);
    std::vector<ChainRound> rounds;
    auto select = store.kept(QStringLiteral(R"sql(
        SELECT round_no, npc_type, level, result, npc_ctid, disappear_tick,
               damage_taken, damage_dealt,
               COALESCE(is_fort_round, 0), COALESCE(is_free_ap, 0)
        FROM reports
        WHERE file_name = ?
        ORDER BY round_no)sql"));
    QSqlQuery &row = select.exec({file_name});
    while (row.next()) {
        ChainRound round;
        round.round_no = row.value(0).toInt();
        round.npc_type = number_in(row.value(1));
        round.level = number_in(row.value(2));
        round.result = number_in(row.value(3));
        round.npc_ctid = number_in(row.value(4));
        round.disappear_tick = number_in(row.value(5));
        round.damage_taken = number_in(row.value(6));
        round.damage_dealt = number_in(row.value(7));
        round.is_fort_round = row.value(8).toInt() != 0;
        round.is_free_ap = row.value(9).toInt() != 0;
        if (round.is_fort_round && round.level.value_or(0.0) > 0.0)
            round.fort_level = saturated(*round.level);
        for (LootEntry &item : loot[round.round_no])
            round.loot.push_back(with_item_facts(std::move(item), item_of));
        rounds.push_back(std::move(round));
    }
    return rounds;
}

std::vector<ChainRun> chains_for_pair(const StoreConnection &store, int hero_1, int hero_2,
                                      const ChainQuestion &question, const ItemLookup &item_of)
{
    const ChainSqlFilter filter = question_conditions({}, question);
    const ReadSnapshot snapshot(store);
    std::vector<ChainRun> chains;
    {
        auto rows = store.exec(
            QStringLiteral(R"sql(
            SELECT DISTINCT file_name, chain_start_time, chain_end_time
            FROM reports
            WHERE hero_id_1 = ? AND hero_id_2 = ? AND %1
            ORDER BY chain_start_time DESC)sql")
                .arg(filter.sql),
            QVariantList{static_cast<double>(hero_1), static_cast<double>(hero_2)} + filter.params);
        while (rows.next())
            chains.push_back({rows.value(0).toString(),
                              number_in(rows.value(1)),
                              number_in(rows.value(2)),
                              {},
                              {}});
    }
    auto select_fort = store.kept(
        QStringLiteral("SELECT file_name FROM fort_reports WHERE battle_file_name = ? LIMIT 1"));
    for (ChainRun &chain : chains) {
        chain.rounds = rounds_of(store, chain.file_name, item_of);
        if (std::none_of(chain.rounds.begin(), chain.rounds.end(),
                         [](const ChainRound &round) { return round.is_fort_round; }))
            continue;
        QSqlQuery &fort = select_fort.exec({chain.file_name});
        if (fort.next())
            chain.fort_file_name = fort.value(0).toString();
    }
    return chains;
}

std::optional<FortOfChain> fort_of_chain(const StoreConnection &store, const QString &file_name)
{
    const ReadSnapshot snapshot(store);
    FortOfChain fort;
    {
        auto row = store.exec(QStringLiteral(R"sql(
            SELECT file_name, event_time, fort_level, tile_x, tile_y, damage_percent
            FROM fort_reports
            WHERE battle_file_name = ?
            LIMIT 1)sql"),
                              {file_name});
        if (!row.next())
            return std::nullopt;
        fort = {row.value(0).toString(),
                number_or_zero(row.value(1)),
                row.value(2).toInt(),
                int_in(row.value(3)),
                int_in(row.value(4)),
                row.value(5).toInt(),
                {}};
    }
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT item_type, item_subtype, value
        FROM fort_loot
        WHERE file_name = ?
        ORDER BY id)sql"),
                           {fort.file_name});
    while (rows.next())
        fort.loot.push_back(read_loot_entry(rows));
    return fort;
}

} // namespace tally::data
