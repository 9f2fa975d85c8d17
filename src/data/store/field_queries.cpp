#include "data/store/remembered.h"
#include "data/store/sql_conditions.h"
#include "data/store/sql_values.h"

#include <QSqlRecord>

namespace tally::data {

namespace {

constexpr const char *mode_clauses[] = {
    ("((my_ct=1 OR my_ct=6) AND (is_rally=0 OR is_rally IS NULL) "
     "AND (enemy_npc_btype=0 OR enemy_npc_btype IS NULL))"),
    "(my_ct=1 AND is_rally=1)",
    "(my_ct>1 AND my_ct!=6)",
    "(email_box='Archive')",
};

constexpr int favorites = 3;

SqlConditions field_conditions(const QString &first, int mode, std::optional<double> from,
                               std::optional<double> to, std::optional<double> player)
{
    const bool known = mode >= 0 && mode < static_cast<int>(std::size(mode_clauses));
    SqlConditions conditions;
    conditions.add(first);
    conditions.add(QString::fromLatin1(known ? mode_clauses[mode] : "1=1"));
    conditions.add(QStringLiteral("email_time >= ?"), from);
    conditions.add(QStringLiteral("email_time < ?"), to);
    conditions.add(QStringLiteral("player_id = ?"), player);
    return conditions;
}

QVariantMap row_as_map(const QSqlQuery &row)
{
    QVariantMap map;
    const QSqlRecord record = row.record();
    for (int i = 0; i < record.count(); ++i)
        map.insert(record.fieldName(i), row.value(i));
    return map;
}

} // namespace

QVariantList TallyDb::field_attacks(std::optional<double> from, std::optional<double> to,
                                    std::optional<double> player, int limit, int mode) const
{
    const SqlConditions conditions =
        field_conditions(QStringLiteral("email_time IS NOT NULL"), mode, from, to, player);
    const QString sql = QStringLiteral(R"sql(
        SELECT file_name, attack_id, attack_seq, email_time, end_date, email_id, email_box,
               email_type, email_role, tour_id, n_attacks, is_kvk, is_rally, my_ct, enemy_ct,
               enemy_npc_type, enemy_npc_btype, player_id, player_name, alliance_name, my_hid,
               my_hid2, enemy_id, enemy_name, enemy_alliance, enemy_hid, enemy_hid2,
               my_kill_score, enemy_kill_score, my_death, enemy_death, my_power, enemy_power,
               my_bad_hurt, enemy_bad_hurt, my_hurt, enemy_hurt
        FROM %1
        WHERE %2
        ORDER BY email_time DESC, tour_id DESC, attack_seq ASC
        LIMIT ?)sql");
    // Left alone, the planner would gather and sort all attacks of the kind instead of walking back
    // in time until there are enough. Favourites are too rare for that, and the index may be gone.
    const auto table = QStringLiteral("field_reports");
    const QString by_time =
        sql.arg(table + QStringLiteral(" INDEXED BY idx_field_time"), conditions.sql());
    const bool walks =
        mode != favorites &&
        any_row(QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = 'idx_field_time'"), {}) &&
        QSqlQuery(connection()).prepare(by_time);
    QVariantList attacks;
    auto rows = exec_prepared(connection(), walks ? by_time : sql.arg(table, conditions.sql()),
                              conditions.params + QVariantList{limit});
    while (rows.next())
        attacks << row_as_map(rows);
    return attacks;
}

FieldSummary TallyDb::field_summary(std::optional<double> from, std::optional<double> to,
                                    std::optional<double> player, int mode) const
{
    const SqlConditions conditions =
        field_conditions(QStringLiteral("1=1"), mode, from, to, player);
    const auto compute = [&] {
        FieldSummary sums;
        auto row = exec_prepared(connection(),
                                 QStringLiteral(R"sql(
            SELECT COUNT(DISTINCT file_name) AS fights,
                   COUNT(*) AS attacks,
                   COUNT(DISTINCT enemy_id) AS unique_enemies,
                   COUNT(DISTINCT CASE WHEN is_kvk=1 THEN file_name END) AS kvk_fights,
                   IFNULL(SUM(my_kill_score),0) AS my_kp,
                   IFNULL(SUM(enemy_kill_score),0) AS enemy_kp,
                   IFNULL(SUM(my_death),0) AS my_deaths,
                   IFNULL(SUM(enemy_death),0) AS enemy_deaths,
                   SUM(CASE WHEN my_kill_score > enemy_kill_score THEN 1 ELSE 0 END) AS wins
            FROM field_reports
            WHERE %1)sql")
                                     .arg(conditions.sql()),
                                 conditions.params);
        if (!row.next())
            return sums;
        sums.fights = row.value(0).toInt();
        sums.attacks = row.value(1).toInt();
        sums.enemies = row.value(2).toInt();
        sums.kvk = row.value(3).toInt();
        sums.my_kp = row.value(4).toLongLong();
        sums.enemy_kp = row.value(5).toLongLong();
        sums.my_deaths = row.value(6).toLongLong();
        sums.enemy_deaths = row.value(7).toLongLong();
        sums.wins = row.value(8).toInt();
        if (sums.attacks > 0)
            sums.win_rate = 100.0 * sums.wins / sums.attacks;
        if (sums.enemy_kp > 0)
            sums.kp_ratio = static_cast<double>(sums.my_kp) / static_cast<double>(sums.enemy_kp);
        return sums;
    };
    return remembered<FieldSummary>(QStringLiteral("field_summary"),
                                    QVariantList{conditions.sql()} + conditions.params, compute);
}

std::optional<QVariantMap> TallyDb::field_attack(const QString &file_name,
                                                 std::optional<double> attack_id) const
{
    auto row = attack_id
                   ? exec_prepared(connection(),
                                   QStringLiteral("SELECT * FROM field_reports "
                                                  "WHERE file_name = ? AND attack_id = ?"),
                                   {file_name, *attack_id})
                   : exec_prepared(connection(),
                                   QStringLiteral("SELECT * FROM field_reports WHERE file_name = ? "
                                                  "ORDER BY attack_seq ASC LIMIT 1"),
                                   {file_name});
    return row.next() ? std::optional(row_as_map(row)) : std::nullopt;
}

std::vector<PlayerRow> TallyDb::field_players() const
{
    return remembered<std::vector<PlayerRow>>(QStringLiteral("field_players"), {}, [&] {
        return player_rows({QStringLiteral("field_reports"), QStringLiteral("file_name")});
    });
}

int TallyDb::field_report_count() const
{
    return single_int(QStringLiteral("SELECT COUNT(*) FROM field_reports"));
}

std::vector<EnemyCount> TallyDb::top_enemies(int limit) const
{
    const auto compute = [&] {
        std::vector<EnemyCount> enemies;
        auto rows = exec_prepared(connection(), QStringLiteral(R"sql(
            SELECT enemy_name, COUNT(*) AS n
            FROM field_reports
            WHERE enemy_name IS NOT NULL AND LENGTH(TRIM(enemy_name)) > 0
            GROUP BY enemy_name
            ORDER BY n DESC, enemy_name ASC
            LIMIT ?)sql"),
                                  {limit});
        while (rows.next())
            enemies.push_back({rows.value(0).toString(), rows.value(1).toInt()});
        return enemies;
    };
    return remembered<std::vector<EnemyCount>>(QStringLiteral("top_enemies"), {limit}, compute);
}

} // namespace tally::data
