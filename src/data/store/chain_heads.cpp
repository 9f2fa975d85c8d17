#include "data/store/chain_heads.h"

#include "data/store/chain_conditions.h"
#include "data/store/round_slicer.h"
#include "data/store/slice_upkeep.h"
#include "data/store/sql_values.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

namespace tally::data {
namespace {

using Times = std::pair<std::optional<double>, std::optional<double>>;

Times times_of(const ChainHead &head)
{
    return {head.chain_start_time, head.chain_end_time};
}

/// Collects the heads of the chains that some slices belong to.
class HeadCollector {
public:
    /// \param slice with the columns of `asked_slices`
    void add_asked(const QSqlQuery &slice)
    {
        const auto chain = slice.value(0).toLongLong();
        const Times times{number_in(slice.value(5)), number_in(slice.value(6))};
        const auto known = place_of_.constFind(chain);
        if (known == place_of_.cend()) {
            place_of_.insert(chain, heads_.size());
            ChainHead &head = heads_.emplace_back();
            head.file_name = slice.value(7).toString();
            std::tie(head.chain_start_time, head.chain_end_time) = times;
        } else if (times != times_of(heads_[*known])) {
            more_times_.emplace(*known, times);
        }
        add_beside(slice);
    }

    /// \param slice with those of `slices_beside`; of whichever chain
    void add_beside(const QSqlQuery &slice)
    {
        const auto known = place_of_.constFind(slice.value(0).toLongLong());
        if (known == place_of_.cend())
            return;
        ChainHead &head = heads_[*known];
        head.rounds += slice.value(1).toInt();
        head.wins += slice.value(2).toInt();
        head.has_fort_round |= slice.value(3).toInt() != 0;
        fights_.clear();
        append_unpacked(slice.value(4).toByteArray(), fights_);
        for (const SliceFight &fight : fights_)
            head.fights.push_back({fight.npc_ctid, fight.outcome == RoundOutcome::won});
    }

    /// The newest first. Ends the collection.
    std::vector<ChainHead> finish()
    {
        // A chain whose rounds tell of several times stands once for each.
        for (const auto &[place, times] : more_times_) {
            ChainHead &head = heads_.emplace_back(ChainHead(heads_[place]));
            std::tie(head.chain_start_time, head.chain_end_time) = times;
        }
        std::ranges::stable_sort(heads_, std::greater(), &ChainHead::chain_start_time);
        return std::move(heads_);
    }

private:
    std::vector<ChainHead> heads_;
    QHash<qint64, std::size_t> place_of_; ///< by the chain's first slice
    std::set<std::pair<std::size_t, Times>> more_times_;
    std::vector<SliceFight> fights_;
};

/// \param matching conditions of the slices that are asked for
QString asked_slices(const QString &matching)
{
    return QStringLiteral(R"sql(
        SELECT COALESCE(first_id, id), rounds, wins, is_fort_round, fights,
               chain_start_time, chain_end_time, file_name
        FROM chain_slices
        WHERE %1)sql")
        .arg(matching);
}

/// The others of their chains.
QString slices_beside(const QString &matching)
{
    return QStringLiteral(R"sql(
        SELECT COALESCE(first_id, id), rounds, wins, is_fort_round, fights
        FROM chain_slices
        WHERE file_name IN (SELECT file_name FROM chain_slices WHERE %1) AND (%1) IS NOT TRUE)sql")
        .arg(matching);
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

    HeadCollector collector;
    auto asked = store.exec(asked_slices(matching), params);
    while (asked.next())
        collector.add_asked(asked);
    auto beside = store.exec(slices_beside(matching), params + params);
    while (beside.next())
        collector.add_beside(beside);
    std::vector<ChainHead> heads = collector.finish();
    if (std::ranges::any_of(heads, &ChainHead::has_fort_round))
        mark_fort_loot(store, heads);
    return heads;
}

} // namespace tally::data
