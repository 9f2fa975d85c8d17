#include "data/store/chain_conditions.h"
#include "data/store/chain_statistics.h"
#include "data/store/reencounters.h"
#include "data/store/remembered.h"
#include "data/store/sql_values.h"

namespace tally::data {

namespace {

const QString durations = QStringLiteral(R"sql(
    SELECT COUNT(DISTINCT file_name) AS n_chains,
           IFNULL(SUM(dur),0) AS total_dur,
           IFNULL(AVG(dur),0) AS avg_dur
    FROM (
      SELECT file_name, (MAX(chain_end_time) - MIN(chain_start_time)) AS dur
      FROM chain_slices
      WHERE %1 AND chain_start_time IS NOT NULL AND chain_end_time IS NOT NULL
      GROUP BY file_name
    ))sql");

void add_counts(const StoreConnection &store, const ChainSqlFilter &filter, ChainSummary &summary)
{
    auto row = store.exec(QStringLiteral(R"sql(
        SELECT SUM(r.rounds), SUM(r.wins), COUNT(DISTINCT COALESCE(r.first_id, r.id)),
               MIN(r.file_mtime), MAX(r.file_mtime), SUM(r.honor)
        FROM chain_slices r
        WHERE %1)sql")
                              .arg(filter.sql),
                          filter.params);
    if (!row.next())
        return;
    summary.battles = row.value(0).toInt();
    summary.wins = row.value(1).toInt();
    summary.files = row.value(2).toInt();
    summary.min_t = number_in(row.value(3));
    summary.max_t = number_in(row.value(4));
    summary.honor = row.value(5).toInt();
}

Reencounters reencounters(const StoreConnection &store, const ChainSqlFilter &filter)
{
    std::vector<MetIn> slices;
    std::vector<Encounter> encounters;
    std::vector<SliceFight> fights;
    auto rows = store.exec(QStringLiteral(R"sql(
        SELECT r.file_name, COALESCE(r.chain_start_time, r.file_mtime), r.fights
        FROM chain_slices r
        WHERE %1)sql")
                               .arg(filter.sql),
                           filter.params);
    while (rows.next()) {
        fights.clear();
        append_unpacked(rows.value(2).toByteArray(), fights);
        for (const SliceFight &fight : fights)
            encounters.push_back({fight.npc_ctid, slices.size(), fight.outcome});
        slices.push_back({rows.value(0).toString(), number_in(rows.value(1))});
    }
    return reencounters(std::move(encounters), slices);
}

/// Without the conditions on forts and action points.
void add_durations(const StoreConnection &store, const ChainQuestion &question,
                   ChainSummary &summary)
{
    const ChainSqlFilter span = span_conditions(question);
    auto row = store.exec(durations.arg(span.sql), span.params);
    if (!row.next())
        return;
    summary.n_chains = row.value(0).toInt();
    summary.total_dur = number_or_zero(row.value(1));
    summary.avg_dur = number_or_zero(row.value(2));
}

} // namespace

ChainSummary summary(const StoreConnection &store, const ChainQuestion &question)
{
    const ChainSqlFilter filter = question_conditions(QStringLiteral("r."), question);
    const auto compute = [&] {
        ChainSummary summary;
        add_counts(store, filter, summary);
        const Reencounters again = reencounters(store, filter);
        summary.escapes = summary.battles - summary.wins - again.tactical;
        summary.wins -= again.free_ap;
        summary.free_ap = again.free_ap;
        summary.tactical = again.tactical;
        summary.chains_ap_only = summary.files - static_cast<int>(again.files_with_free_ap.size());
        summary.kills = summary.wins + summary.free_ap;
        summary.engaged = summary.kills + summary.tactical;
        add_durations(store, question, summary);
        return summary;
    };
    return remembered_of_slices<ChainSummary>(store, QStringLiteral("summary") + filter.sql,
                                              filter.params, compute);
}

QString honor_since_statement()
{
    return QStringLiteral(R"sql(
    SELECT IFNULL(SUM(honor), 0)
    FROM chain_slices
    WHERE COALESCE(file_mtime, chain_end_time, chain_start_time) > ?)sql");
}

int honor_since(const StoreConnection &store, double since)
{
    const auto compute = [&] {
        return store.single_int(honor_since_statement(), {since});
    };
    return remembered_of_slices<int>(store, QStringLiteral("honor_since"), {since}, compute);
}

} // namespace tally::data
