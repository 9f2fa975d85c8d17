#include "support/specified_chain_queries.h"

#include "data/store/chain_conditions.h"
#include "data/store/sql_values.h"

#include <QSqlError>
#include <QSqlQuery>

#include <cmath>
#include <stdexcept>

namespace tally::test {

namespace {

const QString classification = QStringLiteral(R"sql(
    WITH runda_stats AS (
      SELECT r.file_name, r.round_no, r.file_mtime, r.npc_ctid,
             COALESCE(r.chain_start_time, r.file_mtime) AS chain_t,
             IFNULL(SUM(l.value), 0) AS loot_sum
      FROM reports r
      LEFT JOIN loot l ON l.file_name = r.file_name AND l.round_no = r.round_no
      WHERE %1
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
      FROM reports
      WHERE %1 AND chain_start_time IS NOT NULL AND chain_end_time IS NOT NULL
      GROUP BY file_name
    ))sql");

const QString honor = QStringLiteral(R"sql(
    SELECT IFNULL(SUM(CASE
      WHEN r.level BETWEEN 41 AND 45 THEN 10
      WHEN r.level BETWEEN 46 AND 50 THEN 16
      WHEN r.level BETWEEN 51 AND 55 THEN 20
      ELSE 0 END), 0) AS honor
    FROM reports r
    WHERE %1
      AND EXISTS(SELECT 1 FROM loot l
                 WHERE l.file_name = r.file_name AND l.round_no = r.round_no))sql");

const QString best_chain = QStringLiteral(R"sql(
    WITH round_wins AS (
      SELECT r.file_name, r.round_no, IFNULL(SUM(l.value),0) AS lsum
      FROM reports r
      LEFT JOIN loot l ON l.file_name = r.file_name AND l.round_no = r.round_no
      WHERE %1
      GROUP BY r.file_name, r.round_no
    ), file_stats AS (
      SELECT rw.file_name,
             SUM(CASE WHEN rw.lsum > 0 THEN 1 ELSE 0 END) AS wins,
             (SELECT MIN(chain_start_time) FROM reports
              WHERE file_name = rw.file_name) AS start_time,
             (SELECT MAX(chain_end_time) FROM reports
              WHERE file_name = rw.file_name) AS end_time
      FROM round_wins rw
      GROUP BY rw.file_name
    )
    SELECT file_name, wins, (end_time - start_time) AS dur, start_time
    FROM file_stats
    WHERE wins > 0
    ORDER BY wins DESC, dur ASC
    LIMIT 1)sql");

const QString loot = QStringLiteral(R"sql(
    SELECT l.item_type, l.item_subtype,
           SUM(l.value) AS sztuki,
           COUNT(DISTINCT l.file_name || '/' || l.round_no) AS bitwy
    FROM loot l
    JOIN reports r ON r.file_name = l.file_name AND r.round_no = l.round_no
    WHERE %1
    GROUP BY l.item_type, l.item_subtype)sql");

QSqlQuery run(const QSqlDatabase &db, const QString &sql, const QVariantList &params)
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.prepare(sql);
    for (const QVariant &param : params)
        query.addBindValue(param);
    if (!query.exec())
        throw std::runtime_error(query.lastError().text().toStdString());
    return query;
}

QSqlQuery run(const QSqlDatabase &db, const QString &sql, const data::ChainSqlFilter &filter)
{
    return run(db, sql.arg(filter.sql), filter.params);
}

data::ChainSqlFilter conditions(const data::ChainQuestion &question)
{
    return data::question_conditions(QStringLiteral("r."), question);
}

} // namespace

data::ChainSummary specified_summary(const QSqlDatabase &db, const data::ChainQuestion &question)
{
    data::ChainSummary summary;
    auto rounds = run(db, classification, conditions(question));
    rounds.next();
    summary.battles = rounds.value(0).toInt();
    summary.wins = rounds.value(1).toInt();
    summary.free_ap = rounds.value(2).toInt();
    summary.tactical = rounds.value(3).toInt();
    summary.escapes = rounds.value(4).toInt();
    summary.files = rounds.value(5).toInt();
    summary.min_t = data::number_in(rounds.value(6));
    summary.max_t = data::number_in(rounds.value(7));
    summary.chains_ap_only = rounds.value(8).toInt();
    summary.kills = summary.wins + summary.free_ap;
    summary.engaged = summary.kills + summary.tactical;
    auto chains = run(db, durations, data::span_conditions(question));
    chains.next();
    summary.n_chains = chains.value(0).toInt();
    summary.total_dur = data::number_or_zero(chains.value(1));
    summary.avg_dur = data::number_or_zero(chains.value(2));
    auto earned = run(db, honor, conditions(question));
    earned.next();
    summary.honor = earned.value(0).toInt();
    return summary;
}

std::optional<data::BestChain> specified_best_chain(const QSqlDatabase &db,
                                                    const data::ChainQuestion &question)
{
    auto row = run(db, best_chain, conditions(question));
    if (!row.next())
        return std::nullopt;
    return data::BestChain{row.value(0).toString(), row.value(1).toInt(),
                           data::number_or_zero(row.value(2)), data::number_in(row.value(3))};
}

std::vector<data::LootStat> specified_loot_stats(const QSqlDatabase &db,
                                                 const data::ChainQuestion &question)
{
    std::vector<data::LootStat> stats;
    auto rows = run(db, loot, conditions(question));
    while (rows.next()) {
        data::LootStat stat;
        stat.item_type = data::number_in(rows.value(0));
        stat.item_subtype = data::number_in(rows.value(1));
        stat.pieces = static_cast<int>(std::round(rows.value(2).toDouble()));
        stat.total_value = static_cast<qint64>(stat.pieces + 0.5);
        stat.battles = rows.value(3).toInt();
        stats.push_back(stat);
    }
    return stats;
}

int specified_honor_since(const QSqlDatabase &db, double since)
{
    const auto younger =
        QStringLiteral("COALESCE(r.file_mtime, r.chain_end_time, r.chain_start_time) > ?");
    auto row = run(db, honor.arg(younger), QVariantList{since});
    return row.next() ? row.value(0).toInt() : 0;
}

} // namespace tally::test
