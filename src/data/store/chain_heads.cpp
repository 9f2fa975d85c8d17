#include "data/store/chain_heads.h"

#include "data/store/chain_conditions.h"
#include "data/store/round_slicer.h"
#include "data/store/slice_upkeep.h"
#include "data/store/sql_values.h"

#include <QHash>
#include <QSet>

#include <utility>

namespace tally::data {
namespace {

/// \param matching conditions of the slices whose chains are meant
QString slices_of_chains(const QString &matching)
{
    return QStringLiteral(R"sql(
        SELECT COALESCE(first_id, id), rounds, wins, is_fort_round, fights
        FROM chain_slices
        WHERE file_name IN (SELECT file_name FROM chain_slices WHERE %1))sql")
        .arg(matching);
}

void add_slice(ChainHead &head, const QSqlQuery &slice)
{
    head.rounds += slice.value(1).toInt();
    head.wins += slice.value(2).toInt();
    head.has_fort_round |= slice.value(3).toInt() != 0;
    std::vector<SliceFight> fights;
    append_unpacked(slice.value(4).toByteArray(), fights);
    for (const SliceFight &fight : fights)
        head.fights.push_back({fight.npc_ctid, fight.outcome == RoundOutcome::won});
}

void mark_fort_loot(const StoreConnection &store, std::vector<ChainHead> &heads)
{
    QSet<QString> forts;
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT battle_file_name
        FROM fort_reports f
        WHERE battle_file_name IS NOT NULL
          AND EXISTS(SELECT 1 FROM fort_loot l
                     WHERE l.file_name = f.file_name AND l.value <> 0))sql"));
    while (rows.next())
        forts.insert(rows.value(0).toString());
    for (ChainHead &head : heads)
        head.has_fort_loot = head.has_fort_round && forts.contains(head.file_name);
}

} // namespace

std::vector<ChainHead> chain_heads_for_pair(const StoreConnection &store, int hero_1, int hero_2,
                                            const ChainQuestion &question)
{
    const ChainSqlFilter filter = question_conditions({}, question);
    const QString matching = QStringLiteral("hero_id_1 = ? AND hero_id_2 = ? AND ") + filter.sql;
    const QVariantList params =
        QVariantList{static_cast<double>(hero_1), static_cast<double>(hero_2)} + filter.params;
    const SliceSnapshot snapshot(store);

    std::vector<ChainHead> heads;
    QHash<qint64, std::size_t> place_of; // by the chain's first slice
    std::vector<std::pair<std::size_t, std::size_t>> again;
    {
        auto chains = store.exec(QStringLiteral(R"sql(
            SELECT DISTINCT COALESCE(first_id, id), file_name, chain_start_time, chain_end_time
            FROM chain_slices
            WHERE %1
            ORDER BY chain_start_time DESC)sql")
                                     .arg(matching),
                                 params);
        while (chains.next()) {
            const qint64 chain = chains.value(0).toLongLong();
            const auto known = place_of.constFind(chain);
            if (known == place_of.cend())
                place_of.insert(chain, heads.size());
            else
                again.emplace_back(heads.size(), *known);
            ChainHead &head = heads.emplace_back();
            head.file_name = chains.value(1).toString();
            head.chain_start_time = number_in(chains.value(2));
            head.chain_end_time = number_in(chains.value(3));
        }
    }
    bool any_fort = false;
    auto slices = store.exec(slices_of_chains(matching), params);
    while (slices.next()) {
        ChainHead &head = heads[place_of.value(slices.value(0).toLongLong())];
        add_slice(head, slices);
        any_fort |= head.has_fort_round;
    }
    // A chain whose rounds tell of several times stands once for each.
    for (const auto &[place, first] : again) {
        ChainHead head = heads[first];
        head.chain_start_time = heads[place].chain_start_time;
        head.chain_end_time = heads[place].chain_end_time;
        heads[place] = std::move(head);
    }
    if (any_fort)
        mark_fort_loot(store, heads);
    return heads;
}

} // namespace tally::data
