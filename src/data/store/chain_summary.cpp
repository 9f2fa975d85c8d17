#include "data/store/chain_slice.h"
#include "data/store/remembered.h"
#include "data/store/sql_values.h"

#include <algorithm>
#include <set>

namespace tally::data {

namespace {

const QString classification = QStringLiteral(R"sql(
    WITH runda_stats AS (
      SELECT r.file_name, r.round_no, r.file_mtime, r.npc_ctid,
             COALESCE(r.chain_start_time, r.file_mtime) AS chain_t,
             IFNULL(SUM(l.value), 0) AS loot_sum
      FROM reports r
      LEFT JOIN loot l ON l.file_name = r.file_name AND l.round_no = r.round_no
      WHERE (? IS NULL OR r.npc_btype = ?)%1
      GROUP BY r.file_name, r.round_no
    ), classified AS (
      SELECT rs.*,
        CASE
          WHEN loot_sum > 0 AND npc_ctid IS NOT NULL AND EXISTS(
            SELECT 1 FROM runda_stats r2
            WHERE r2.npc_ctid = rs.npc_ctid AND r2.chain_t < rs.chain_t AND r2.loot_sum = 0
          ) THEN 'free_ap'
          WHEN loot_sum > 0 THEN 'win'
          WHEN loot_sum = 0 AND npc_ctid IS NOT NULL AND EXISTS(
            SELECT 1 FROM runda_stats r2
            WHERE r2.npc_ctid = rs.npc_ctid AND r2.chain_t > rs.chain_t
          ) THEN 'tactical'
          ELSE 'real_escape'
        END AS category
      FROM runda_stats rs
    )
    SELECT COUNT(*) AS bitwy,
           SUM(CASE WHEN category = 'win'          THEN 1 ELSE 0 END) AS wygrane,
           SUM(CASE WHEN category = 'free_ap'      THEN 1 ELSE 0 END) AS free_ap,
           SUM(CASE WHEN category = 'tactical'     THEN 1 ELSE 0 END) AS tactical,
           SUM(CASE WHEN category = 'real_escape'  THEN 1 ELSE 0 END) AS real_escape,
           COUNT(DISTINCT file_name) AS pliki,
           MIN(file_mtime) AS min_t,
           MAX(file_mtime) AS max_t,
           COUNT(DISTINCT file_name) -
             COUNT(DISTINCT CASE WHEN category = 'free_ap' THEN file_name END) AS chains_ap_only
    FROM classified)sql");

const QString durations = QStringLiteral(R"sql(
    SELECT COUNT(DISTINCT file_name) AS n_chains,
           IFNULL(SUM(dur),0) AS total_dur,
           IFNULL(AVG(dur),0) AS avg_dur
    FROM (
      SELECT file_name, (MAX(chain_end_time) - MIN(chain_start_time)) AS dur
      FROM %1
      WHERE (? IS NULL OR npc_btype = ?) AND chain_start_time IS NOT NULL
            AND chain_end_time IS NOT NULL%2
      GROUP BY file_name
    ))sql");

const QString honor_of_rounds = QStringLiteral(R"sql(
    SELECT IFNULL(SUM(CASE
      WHEN r.level BETWEEN 41 AND 45 THEN 10
      WHEN r.level BETWEEN 46 AND 50 THEN 16
      WHEN r.level BETWEEN 51 AND 55 THEN 20
      ELSE 0 END), 0) AS honor
    FROM reports r
    WHERE %1
      AND EXISTS(SELECT 1 FROM loot l
                 WHERE l.file_name = r.file_name AND l.round_no = r.round_no))sql");
const QString honor_of_slices = QStringLiteral(R"sql(
    SELECT IFNULL(SUM(r.honor), 0) AS honor
    FROM chain_slices r
    WHERE %1)sql");

/// A round against a barbarian that was known by its id.
struct Encounter {
    double npc_ctid;
    std::size_t slice;
    RoundOutcome outcome;
};

struct Met {
    QString file_name;
    std::optional<double> time;
};

/// What the encounters of one barbarian, in no order, tell.
struct Reencounters {
    int free_ap = 0;
    int tactical = 0;
    std::set<QString> files_with_free_ap;
};

/// Adds the encounters [first, last) of one barbarian.
void classify(std::vector<Encounter>::const_iterator first,
              std::vector<Encounter>::const_iterator last, const std::vector<Met> &slices,
              Reencounters &result)
{
    std::optional<double> first_lootless;
    std::optional<double> last_time;
    for (auto met = first; met != last; ++met) {
        const std::optional<double> time = slices[met->slice].time;
        if (!time)
            continue;
        if (met->outcome == RoundOutcome::lootless && (!first_lootless || *time < *first_lootless))
            first_lootless = time;
        if (!last_time || *time > *last_time)
            last_time = time;
    }
    for (auto met = first; met != last; ++met) {
        const auto &[file_name, time] = slices[met->slice];
        if (!time)
            continue;
        if (met->outcome == RoundOutcome::won && first_lootless && *first_lootless < *time) {
            ++result.free_ap;
            result.files_with_free_ap.insert(file_name);
        } else if (met->outcome == RoundOutcome::lootless && *last_time > *time) {
            ++result.tactical;
        }
    }
}

Reencounters classify(std::vector<Encounter> encounters, const std::vector<Met> &slices)
{
    std::sort(encounters.begin(), encounters.end(),
              [](const Encounter &a, const Encounter &b) { return a.npc_ctid < b.npc_ctid; });
    Reencounters result;
    for (auto first = encounters.cbegin(); first != encounters.cend();) {
        const auto last = std::find_if(first, encounters.cend(), [&](const Encounter &other) {
            return other.npc_ctid != first->npc_ctid;
        });
        classify(first, last, slices, result);
        first = last;
    }
    return result;
}

} // namespace

void TallyDb::classify_rounds(ChainSummary &summary, const QString &filter,
                              const QVariantList &params) const
{
    auto row = exec_prepared(connection(), classification.arg(filter), params);
    if (!row.next())
        return;
    summary.battles = row.value(0).toInt();
    summary.wins = row.value(1).toInt();
    summary.free_ap = row.value(2).toInt();
    summary.tactical = row.value(3).toInt();
    summary.escapes = row.value(4).toInt();
    summary.files = row.value(5).toInt();
    summary.min_t = number_in(row.value(6));
    summary.max_t = number_in(row.value(7));
    summary.chains_ap_only = row.value(8).toInt();
}

// The same over the slices. Only rounds against one barbarian tell of each other, so they are
// brought together once instead of being searched for every round.
void TallyDb::classify_slices(ChainSummary &summary, const QString &filter,
                              const QVariantList &params) const
{
    {
        auto row = exec_prepared(connection(),
                                 QStringLiteral(R"sql(
            SELECT SUM(r.rounds), SUM(r.wins), COUNT(DISTINCT COALESCE(r.first_id, r.id)),
                   MIN(r.file_mtime), MAX(r.file_mtime)
            FROM chain_slices r
            WHERE (? IS NULL OR r.npc_btype = ?)%1)sql")
                                     .arg(filter),
                                 params);
        if (!row.next())
            return;
        summary.battles = row.value(0).toInt();
        summary.wins = row.value(1).toInt();
        summary.files = row.value(2).toInt();
        summary.min_t = number_in(row.value(3));
        summary.max_t = number_in(row.value(4));
    }
    std::vector<Met> slices;
    std::vector<Encounter> encounters;
    std::vector<SliceFight> fights;
    auto rows = exec_prepared(connection(),
                              QStringLiteral(R"sql(
        SELECT r.file_name, COALESCE(r.chain_start_time, r.file_mtime), r.fights
        FROM chain_slices r
        WHERE (? IS NULL OR r.npc_btype = ?)%1)sql")
                                  .arg(filter),
                              params);
    while (rows.next()) {
        fights.clear();
        append_unpacked(rows.value(2).toByteArray(), fights);
        for (const SliceFight &fight : fights)
            encounters.push_back({fight.npc_ctid, slices.size(), fight.outcome});
        slices.push_back({rows.value(0).toString(), number_in(rows.value(1))});
    }
    const Reencounters again = classify(std::move(encounters), slices);
    summary.escapes = summary.battles - summary.wins - again.tactical;
    summary.wins -= again.free_ap;
    summary.free_ap = again.free_ap;
    summary.tactical = again.tactical;
    summary.chains_ap_only = summary.files - static_cast<int>(again.files_with_free_ap.size());
}

ChainSummary TallyDb::summary(double btype, std::optional<double> from, std::optional<double> to,
                              std::optional<double> player) const
{
    const ChainSqlFilter filter = chain_filter(QStringLiteral("r."), from, to, player);
    const QVariantList params = QVariantList{btype, btype} + filter.params;
    const auto compute = [&] {
        ChainSummary summary;
        const bool sliced = slices_complete();
        if (sliced)
            classify_slices(summary, filter.sql, params);
        else
            classify_rounds(summary, filter.sql, params);
        summary.kills = summary.wins + summary.free_ap;
        summary.engaged = summary.kills + summary.tactical;

        QString span;
        if (from)
            span += QStringLiteral(" AND COALESCE(chain_start_time, file_mtime) >= ?");
        if (to)
            span += QStringLiteral(" AND COALESCE(chain_start_time, file_mtime) < ?");
        if (player)
            span += QStringLiteral(" AND player_id = ?");
        // The values are the filter's: its other conditions have none.
        auto chains =
            exec_prepared(connection(), durations.arg(chain_source().table, span), params);
        if (chains.next()) {
            summary.n_chains = chains.value(0).toInt();
            summary.total_dur = number_or_zero(chains.value(1));
            summary.avg_dur = number_or_zero(chains.value(2));
        }

        const QString condition = QStringLiteral("(? IS NULL OR r.npc_btype = ?)") + filter.sql;
        summary.honor =
            single_int((sliced ? honor_of_slices : honor_of_rounds).arg(condition), params);
        return summary;
    };
    return remembered<ChainSummary>(QStringLiteral("summary"),
                                    QVariantList{btype, filter.sql} + filter.params, compute);
}

int TallyDb::honor_since(double since) const
{
    const auto compute = [&] {
        const auto condition =
            QStringLiteral("COALESCE(r.file_mtime, r.chain_end_time, r.chain_start_time) > ?");
        return single_int((slices_complete() ? honor_of_slices : honor_of_rounds).arg(condition),
                          {since});
    };
    return remembered<int>(QStringLiteral("honor_since"), {since}, compute);
}

} // namespace tally::data
