#include "data/store/migrations.h"

#include "data/store/field_columns.h"
#include "data/store/store_backup.h"
#include "data/store/store_connection.h"

#include <iterator>
#include <utility>
#include <vector>

namespace tally::data {

namespace {

struct AddedColumn {
    const char *table;
    const char *column;
    const char *type;
};

constexpr AddedColumn late_columns[] = {
    {"reports", "chain_start_time", "REAL"},
    {"reports", "chain_end_time", "REAL"},
    {"reports", "hero_id_1", "REAL"},
    {"reports", "hero_id_2", "REAL"},
    {"reports", "npc_ctid", "REAL"},
    {"reports", "disappear_tick", "REAL"},
    {"reports", "damage_taken", "REAL"},
    {"reports", "damage_dealt", "REAL"},
    {"reports", "ets", "REAL"},
    {"reports", "player_id", "REAL"},
    {"reports", "player_name", "TEXT"},
    {"reports", "alliance_name", "TEXT"},
    {"reports", "is_free_ap", "INTEGER DEFAULT 0"},
    {"reports", "is_fort_round", "INTEGER DEFAULT 0"},
    {"fort_reports", "battle_file_name", "TEXT"},
};

/// What tables of older versions may lack, in the order in which they get it.
std::vector<AddedColumn> added_columns()
{
    std::vector<AddedColumn> columns(std::begin(late_columns), std::end(late_columns));
    for (const auto version : {FieldColumn::armies, FieldColumn::inscriptions}) {
        for (const FieldColumn &column : field_columns) {
            if (column.since == version)
                columns.push_back({"field_reports", column.name, column.type});
        }
    }
    return columns;
}

} // namespace

bool migrate_structure(const StoreConnection &store, double now)
{
    const auto lacks = [&store](const QString &table, const QString &column) {
        return store.table_exists(table) && !store.table_columns(table).contains(column);
    };
    bool dropped = false;
    const auto drop = [&](const QString &table) {
        // The mails of dropped rows may have left the game's folder since.
        if (!std::exchange(dropped, true))
            back_up(store, now);
        store.exec(QStringLiteral("DROP TABLE IF EXISTS %1").arg(table));
    };
    if (lacks(QStringLiteral("reports"), QStringLiteral("round_no"))) {
        drop(QStringLiteral("loot"));
        drop(QStringLiteral("reports"));
    }
    if (lacks(QStringLiteral("field_reports"), QStringLiteral("attack_id")))
        drop(QStringLiteral("field_reports"));
    if (lacks(QStringLiteral("field_reports"), QStringLiteral("tour_id"))) {
        drop(QStringLiteral("field_reports"));
        if (store.table_exists(QStringLiteral("settings")))
            store.exec(QStringLiteral("DELETE FROM settings WHERE key='npc_migration_v4_done'"));
    }
    return dropped;
}

void add_missing_columns(const StoreConnection &store)
{
    for (const auto &[table_text, column_text, type_text] : added_columns()) {
        const auto table = QString::fromLatin1(table_text);
        const auto column = QString::fromLatin1(column_text);
        const auto columns = store.table_columns(table);
        if (columns.isEmpty() || columns.contains(column))
            continue;
        store.exec(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3")
                       .arg(table, column, QLatin1StringView(type_text)));
    }
}

void create_late_indexes(const StoreConnection &store)
{
    const auto run = [&store](const QString &sql) {
        store.exec(sql);
    };
    run(QStringLiteral("CREATE INDEX IF NOT EXISTS idx_reports_heros ON "
                       "reports(hero_id_1, hero_id_2)"));
    run(QStringLiteral("CREATE INDEX IF NOT EXISTS idx_reports_ctid  ON reports(npc_ctid)"));
    // The time of a chain, by which forts look for it.
    run(QStringLiteral("CREATE INDEX IF NOT EXISTS idx_reports_chain_time "
                       "ON reports(COALESCE(chain_start_time, file_mtime))"));
    // The rounds that the backfill of the fort flags looks for: those that it has to change (none,
    // usually) and the few fort rounds.
    run(QStringLiteral("CREATE INDEX IF NOT EXISTS idx_reports_unmarked_forts "
                       "ON reports(damage_dealt) WHERE COALESCE(is_fort_round, 0) = 0 "
                       "AND damage_dealt IS NOT NULL AND damage_dealt >= 1500000"));
    run(QStringLiteral("CREATE INDEX IF NOT EXISTS idx_reports_forts ON reports(file_name) "
                       "WHERE COALESCE(is_fort_round, 0) = 1"));
    run(QStringLiteral("CREATE INDEX IF NOT EXISTS idx_fort_battle "
                       "ON fort_reports(battle_file_name)"));
}

void backfill_fort_flags(const StoreConnection &store)
{
    store.exec(QStringLiteral(R"sql(
        UPDATE reports SET is_fort_round = 1
        WHERE COALESCE(is_fort_round, 0) = 0
          AND damage_dealt IS NOT NULL
          AND damage_dealt >= 1500000)sql"));
    store.exec(QStringLiteral(R"sql(
        UPDATE reports SET is_free_ap = 1
        WHERE COALESCE(is_free_ap, 0) = 0
          AND COALESCE(is_fort_round, 0) = 0
          AND file_name IN (
            SELECT DISTINCT file_name FROM reports
            WHERE COALESCE(is_fort_round, 0) = 1))sql"));
}

void refresh_statistics(const StoreConnection &store)
{
    const QSqlDatabase db = store.connection();
    const auto has_row = [&db](const QString &sql) {
        QSqlQuery query(db);
        return query.exec(sql) && query.next();
    };
    QSqlQuery(db).exec(QStringLiteral("PRAGMA analysis_limit = 1000"));
    for (const char *name : {"chain_slices", "field_reports", "trial_reports", "fort_reports"}) {
        const auto table = QString::fromLatin1(name);
        if (has_row(QStringLiteral("SELECT 1 FROM %1 LIMIT 1").arg(table)) &&
            !has_row(QStringLiteral("SELECT 1 FROM sqlite_stat1 WHERE tbl = '%1'").arg(table))) {
            QSqlQuery(db).exec(QStringLiteral("ANALYZE"));
            return;
        }
    }
    QSqlQuery(db).exec(QStringLiteral("PRAGMA optimize"));
}

} // namespace tally::data
