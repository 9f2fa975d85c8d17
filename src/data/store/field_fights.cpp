#include "data/store/field_fights.h"

#include "data/store/field_columns.h"
#include "data/store/player_rows.h"
#include "data/store/remembered.h"
#include "data/store/sql_conditions.h"
#include "data/store/sql_values.h"

#include <QMutexLocker>
#include <QSqlRecord>
#include <QStringList>

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

/// All columns but those that only the details of an attack need.
QString listed_columns()
{
    QStringList names;
    for (const FieldColumn &column : field_columns) {
        if (column.place == FieldColumn::in_lists)
            names << QLatin1StringView(column.name);
    }
    return names.join(u", ");
}

/// Left alone, the planner would gather all attacks of a kind or player: favourites are rare among
/// them, and so are those of a few days. The index may be gone.
/// \param sql its table is %1
QString by_index(const StoreConnection &store, const QString &sql, int mode)
{
    const QString index =
        mode == favorites ? QStringLiteral("idx_field_box") : QStringLiteral("idx_field_time");
    const auto table = QStringLiteral("field_reports");
    const QString indexed = sql.arg(QStringLiteral("%1 INDEXED BY %2").arg(table, index));
    const bool is_there =
        store.any_row(QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = ?"), {index}) &&
        QSqlQuery(store.connection()).prepare(indexed);
    return is_there ? indexed : sql.arg(table);
}

QStringList column_names(const QSqlQuery &rows)
{
    QStringList names;
    const QSqlRecord record = rows.record();
    for (int i = 0; i < record.count(); ++i)
        names << record.fieldName(i);
    return names;
}

QVariantMap row_as_map(const QSqlQuery &row, const QStringList &names)
{
    QVariantMap map;
    for (int i = 0; i < names.size(); ++i)
        map.insert(names.at(i), row.value(i));
    return map;
}

} // namespace

QVariantList field_attacks(const StoreConnection &store, std::optional<double> from,
                           std::optional<double> to, std::optional<double> player, int limit,
                           int mode)
{
    const SqlConditions conditions =
        field_conditions(QStringLiteral("email_time IS NOT NULL"), mode, from, to, player);
    const QString sql = QStringLiteral(R"sql(
        SELECT %1
        FROM %2
        WHERE %3
        ORDER BY email_time DESC, tour_id DESC, attack_seq ASC
        LIMIT ?)sql")
                            .arg(listed_columns(), QStringLiteral("%1"), conditions.sql());
    QVariantList attacks;
    auto rows = store.exec(by_index(store, sql, mode), conditions.params + QVariantList{limit});
    const QStringList names = column_names(rows);
    while (rows.next())
        attacks << row_as_map(rows, names);
    return attacks;
}

FieldSummary field_summary(const StoreConnection &store, std::optional<double> from,
                           std::optional<double> to, std::optional<double> player, int mode)
{
    const SqlConditions conditions =
        field_conditions(QStringLiteral("1=1"), mode, from, to, player);
    const auto compute = [&] {
        FieldSummary sums;
        const QString sql = QStringLiteral(R"sql(
            SELECT COUNT(DISTINCT file_name) AS fights,
                   COUNT(*) AS attacks,
                   COUNT(DISTINCT enemy_id) AS unique_enemies,
                   COUNT(DISTINCT CASE WHEN is_kvk=1 THEN file_name END) AS kvk_fights,
                   IFNULL(SUM(my_kill_score),0) AS my_kp,
                   IFNULL(SUM(enemy_kill_score),0) AS enemy_kp,
                   IFNULL(SUM(my_death),0) AS my_deaths,
                   IFNULL(SUM(enemy_death),0) AS enemy_deaths,
                   SUM(CASE WHEN my_kill_score > enemy_kill_score THEN 1 ELSE 0 END) AS wins
            FROM %1
            WHERE %2)sql")
                                .arg(QStringLiteral("%1"), conditions.sql());
        const bool is_part = from || to || mode == favorites;
        auto row = store.exec(is_part ? by_index(store, sql, mode)
                                      : sql.arg(QStringLiteral("field_reports")),
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
    return remembered<FieldSummary>(store, QStringLiteral("field_summary"),
                                    QVariantList{conditions.sql()} + conditions.params, compute);
}

std::optional<QVariantMap> field_attack(const StoreConnection &store, const QString &file_name,
                                        std::optional<double> attack_id)
{
    auto row = attack_id
                   ? store.exec(QStringLiteral("SELECT * FROM field_reports "
                                               "WHERE file_name = ? AND attack_id = ?"),
                                {file_name, *attack_id})
                   : store.exec(QStringLiteral("SELECT * FROM field_reports WHERE file_name = ? "
                                               "ORDER BY attack_seq ASC LIMIT 1"),
                                {file_name});
    return row.next() ? std::optional(row_as_map(row, column_names(row))) : std::nullopt;
}

std::vector<PlayerRow> field_players(const StoreConnection &store)
{
    return remembered<std::vector<PlayerRow>>(store, QStringLiteral("field_players"), {}, [&] {
        // In the order of the index, which holds all of it.
        return player_rows(store, QStringLiteral(R"sql(
            SELECT player_id, MAX(name), COUNT(file_name) AS n
            FROM (
              SELECT player_id, MAX(player_name) AS name, file_name
              FROM field_reports
              WHERE player_id IS NOT NULL
              GROUP BY player_id, file_name)
            GROUP BY player_id
            ORDER BY n DESC, player_id)sql"));
    });
}

int field_report_count(const StoreConnection &store)
{
    return store.single_int(QStringLiteral("SELECT COUNT(*) FROM field_reports"));
}

std::vector<EnemyCount> top_enemies(const StoreConnection &store, int limit)
{
    const auto compute = [&] {
        std::vector<EnemyCount> enemies;
        auto rows = store.exec(QStringLiteral(R"sql(
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
    return remembered<std::vector<EnemyCount>>(store, QStringLiteral("top_enemies"), {limit},
                                               compute);
}

void set_field_favorite(const StoreConnection &store, const QString &file_name, bool favorite)
{
    const QMutexLocker lock(&store.write_mutex());
    store.exec(QStringLiteral("UPDATE field_reports SET email_box=? WHERE file_name=?"),
               {favorite ? QStringLiteral("Archive") : QStringLiteral("Inbox"), file_name});
}

bool is_field_favorite(const StoreConnection &store, const QString &file_name)
{
    return store.any_row(QStringLiteral("SELECT 1 FROM field_reports "
                                        "WHERE file_name=? AND email_box='Archive' LIMIT 1"),
                         {file_name});
}

} // namespace tally::data
