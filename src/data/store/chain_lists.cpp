#include "data/master/item_facts.h"
#include "data/store/loot_sums.h"
#include "data/store/remembered.h"
#include "data/store/sql_values.h"

#include <algorithm>
#include <map>

namespace tally::data {

std::vector<ChainRun> TallyDb::chains_for_pair(int hero_1, int hero_2, double btype,
                                               std::optional<double> from, std::optional<double> to,
                                               std::optional<double> player) const
{
    const ChainSqlFilter filter = chain_filter({}, from, to, player);
    const ReadSnapshot snapshot(connection());
    std::vector<ChainRun> chains;
    {
        auto rows = exec_prepared(
            connection(),
            QStringLiteral(R"sql(
            SELECT DISTINCT file_name, chain_start_time, chain_end_time
            FROM reports
            WHERE hero_id_1 = ? AND hero_id_2 = ?
              AND (? IS NULL OR npc_btype = ?)%1
            ORDER BY chain_start_time DESC)sql")
                .arg(filter.sql),
            QVariantList{static_cast<double>(hero_1), static_cast<double>(hero_2), btype, btype} +
                filter.params);
        while (rows.next())
            chains.push_back({rows.value(0).toString(),
                              number_in(rows.value(1)),
                              number_in(rows.value(2)),
                              {},
                              {}});
    }
    auto select_fort = kept(
        QStringLiteral("SELECT file_name FROM fort_reports WHERE battle_file_name = ? LIMIT 1"));
    for (ChainRun &chain : chains) {
        chain.rounds = rounds_of(chain.file_name);
        if (std::none_of(chain.rounds.begin(), chain.rounds.end(),
                         [](const ChainRound &round) { return round.is_fort_round; }))
            continue;
        QSqlQuery &fort = select_fort.exec({chain.file_name});
        if (fort.next())
            chain.fort_file_name = fort.value(0).toString();
    }
    return chains;
}

/// The loot of a chain by its rounds, without the items' facts.
std::map<int, std::vector<LootEntry>> TallyDb::round_loot(const QString &file_name) const
{
    std::map<int, std::vector<LootEntry>> loot;
    auto select = kept(QStringLiteral("SELECT round_no, item_type, item_subtype, value "
                                      "FROM loot WHERE file_name = ? ORDER BY id"));
    QSqlQuery &rows = select.exec({file_name});
    while (rows.next())
        loot[rows.value(0).toInt()].push_back(read_loot_entry(rows, 1));
    return loot;
}

std::vector<ChainRound> TallyDb::rounds_of(const QString &file_name) const
{
    std::map<int, std::vector<LootEntry>> loot = round_loot(file_name);
    std::vector<ChainRound> rounds;
    auto select = kept(QStringLiteral(R"sql(
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
            round.loot.push_back(with_item_facts(std::move(item)));
        rounds.push_back(std::move(round));
    }
    return rounds;
}

std::optional<FortOfChain> TallyDb::fort_of_chain(const QString &file_name) const
{
    const ReadSnapshot snapshot(connection());
    FortOfChain fort;
    {
        auto row = exec_prepared(connection(), QStringLiteral(R"sql(
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
    auto rows = exec_prepared(connection(), QStringLiteral(R"sql(
        SELECT item_type, item_subtype, value
        FROM fort_loot
        WHERE file_name = ?
        ORDER BY id)sql"),
                              {fort.file_name});
    while (rows.next())
        fort.loot.push_back(read_loot_entry(rows));
    return fort;
}

/// The accounts of a table with a row for each mail or part of one.
std::vector<PlayerRow> TallyDb::player_rows(const ChainSource &source) const
{
    std::vector<PlayerRow> accounts;
    auto rows = exec_prepared(connection(), QStringLiteral(R"sql(
        SELECT player_id, MAX(player_name) AS name, COUNT(DISTINCT %1) AS n
        FROM %2
        WHERE player_id IS NOT NULL
        GROUP BY player_id
        ORDER BY n DESC)sql")
                                                .arg(source.chain, source.table));
    while (rows.next())
        accounts.push_back(
            {number_in(rows.value(0)), rows.value(1).toString(), rows.value(2).toInt()});
    return accounts;
}

std::vector<PlayerRow> TallyDb::players() const
{
    return remembered<std::vector<PlayerRow>>(QStringLiteral("players"), {},
                                              [&] { return player_rows(chain_source()); });
}

int TallyDb::chain_file_count() const
{
    return remembered<int>(QStringLiteral("chain_file_count"), {}, [&] {
        const ChainSource source = chain_source();
        return single_int(
            QStringLiteral("SELECT COUNT(DISTINCT %1) FROM %2").arg(source.chain, source.table));
    });
}

int TallyDb::report_count(std::optional<double> btype) const
{
    return remembered<int>(QStringLiteral("report_count"), {nullable(btype)}, [&] {
        if (btype)
            return single_int(QStringLiteral("SELECT COUNT(*) FROM reports WHERE npc_btype = ?"),
                              {*btype});
        return single_int(QStringLiteral("SELECT COUNT(*) FROM reports"));
    });
}

} // namespace tally::data
