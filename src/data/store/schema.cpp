#include "data/store/schema.h"

#include "data/store/field_columns.h"
#include "data/store/fort_links.h"
#include "data/store/mail_memory.h"
#include "data/store/migrations.h"
#include "data/store/slice_upkeep.h"
#include "data/store/store_connection.h"

#include <QMutexLocker>
#include <QStringList>

#include <exception>

namespace tally::data {

namespace {

// Run statement by statement: one ends with the line that ends with a semicolon. Databases of
// earlier builds get what their tables lack in the column pass, and so do new ones for the columns
// that stand in no statement here.
constexpr const char16_t schema_script[] = uR"sql(
CREATE TABLE IF NOT EXISTS reports (
  file_name TEXT NOT NULL,
  round_no INTEGER NOT NULL DEFAULT 0,
  npc_btype REAL,
  npc_type REAL,
  level REAL,
  result REAL,
  report_time REAL,
  file_mtime REAL,
  imported_at REAL,
  chain_start_time REAL,
  chain_end_time REAL,
  hero_id_1 REAL,
  hero_id_2 REAL,
  npc_ctid REAL,
  disappear_tick REAL,
  damage_taken REAL,
  damage_dealt REAL,
  player_id REAL,
  player_name TEXT,
  alliance_name TEXT,
  PRIMARY KEY (file_name, round_no)
);
CREATE INDEX IF NOT EXISTS idx_reports_btype ON reports(npc_btype);
CREATE INDEX IF NOT EXISTS idx_reports_mtime ON reports(file_mtime);

/* No foreign key to reports: the insert deletes the rows of both. */
CREATE TABLE IF NOT EXISTS loot (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  file_name TEXT NOT NULL,
  round_no INTEGER NOT NULL DEFAULT 0,
  item_type REAL,
  item_subtype REAL,
  value REAL
);
CREATE INDEX IF NOT EXISTS idx_loot_file ON loot(file_name, round_no);
CREATE INDEX IF NOT EXISTS idx_loot_item ON loot(item_type, item_subtype);

CREATE TABLE IF NOT EXISTS settings (
  key TEXT PRIMARY KEY,
  value TEXT
);

CREATE TABLE IF NOT EXISTS field_reports (
  %1,
  PRIMARY KEY (file_name, attack_id)
);
CREATE INDEX IF NOT EXISTS idx_field_time ON field_reports(email_time);
CREATE INDEX IF NOT EXISTS idx_field_player ON field_reports(player_id);
CREATE INDEX IF NOT EXISTS idx_field_accounts ON field_reports(player_id, file_name, player_name);
CREATE INDEX IF NOT EXISTS idx_field_enemy ON field_reports(enemy_id);
CREATE INDEX IF NOT EXISTS idx_field_file ON field_reports(file_name);
CREATE INDEX IF NOT EXISTS idx_field_tour ON field_reports(tour_id);
CREATE INDEX IF NOT EXISTS idx_field_email ON field_reports(email_id);
CREATE INDEX IF NOT EXISTS idx_field_box ON field_reports(email_box);
CREATE INDEX IF NOT EXISTS idx_field_npc ON field_reports(enemy_npc_btype);

CREATE TABLE IF NOT EXISTS honor_summary_log (
  log_time REAL NOT NULL,
  base_timestamp REAL,
  base_honor INTEGER,
  new_timestamp REAL,
  new_honor INTEGER,
  delta_reports INTEGER,
  estimated INTEGER,
  discrepancy INTEGER
);
CREATE INDEX IF NOT EXISTS idx_honor_log_time ON honor_summary_log(log_time);

/* Deleting a trial or fort removes its children: that is how a mail replaces its rows. */
CREATE TABLE IF NOT EXISTS trial_reports (
  file_name TEXT PRIMARY KEY,
  mail_id TEXT,
  boss_name TEXT,
  npc_type REAL,
  npc_level REAL,
  tile_x INTEGER,
  tile_y INTEGER,
  event_time REAL,
  file_mtime REAL
);
CREATE INDEX IF NOT EXISTS idx_trial_time ON trial_reports(event_time);
CREATE INDEX IF NOT EXISTS idx_trial_boss ON trial_reports(boss_name);

CREATE TABLE IF NOT EXISTS trial_participants (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  file_name TEXT NOT NULL,
  player_id REAL,
  player_name TEXT,
  damage_rate REAL,
  order_ INTEGER,
  FOREIGN KEY (file_name) REFERENCES trial_reports(file_name) ON DELETE CASCADE
);
CREATE INDEX IF NOT EXISTS idx_trial_part_file ON trial_participants(file_name);
CREATE INDEX IF NOT EXISTS idx_trial_part_player ON trial_participants(player_id);
CREATE INDEX IF NOT EXISTS idx_trial_part_name ON trial_participants(player_name);

CREATE TABLE IF NOT EXISTS trial_loot (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  participant_id INTEGER NOT NULL,
  item_type INTEGER,
  item_subtype INTEGER,
  value INTEGER,
  FOREIGN KEY (participant_id) REFERENCES trial_participants(id) ON DELETE CASCADE
);
CREATE INDEX IF NOT EXISTS idx_trial_loot_part ON trial_loot(participant_id);

CREATE TABLE IF NOT EXISTS fort_reports (
  file_name TEXT PRIMARY KEY,
  mail_id TEXT,
  fort_level INTEGER,
  tile_x INTEGER,
  tile_y INTEGER,
  damage_percent INTEGER,
  event_time REAL,
  file_mtime REAL
);
CREATE INDEX IF NOT EXISTS idx_fort_time ON fort_reports(event_time);
CREATE INDEX IF NOT EXISTS idx_fort_level ON fort_reports(fort_level);

CREATE TABLE IF NOT EXISTS fort_loot (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  file_name TEXT NOT NULL,
  item_type INTEGER,
  item_subtype INTEGER,
  value INTEGER,
  FOREIGN KEY (file_name) REFERENCES fort_reports(file_name) ON DELETE CASCADE
);
CREATE INDEX IF NOT EXISTS idx_fort_loot_file ON fort_loot(file_name);
)sql";

QString field_column_definitions()
{
    QStringList definitions;
    for (const FieldColumn &column : field_columns)
        definitions << QStringLiteral("%1 %2").arg(QLatin1StringView(column.name),
                                                   QLatin1StringView(column.type));
    return definitions.join(u",\n  ");
}

QStringList statements_of(const QString &script)
{
    QStringList statements;
    QString buffer;
    const auto flush = [&] {
        if (const QString statement = buffer.trimmed(); !statement.isEmpty())
            statements << statement;
        buffer.clear();
    };
    for (const QString &line : script.split(u'\n')) {
        buffer += line + u'\n';
        if (line.trimmed().endsWith(u';'))
            flush();
    }
    flush();
    return statements;
}

void run_schema_script(const StoreConnection &store)
{
    const QString script = QString::fromUtf16(schema_script).arg(field_column_definitions());
    for (const QString &statement : statements_of(script)) {
        QSqlQuery query(store.connection());
        if (!query.exec(statement))
            StoreConnection::fatal(
                QStringLiteral("schema stmt failed: %1").arg(statement.simplified()),
                query.lastError());
    }
}

} // namespace

bool init_schema(const StoreConnection &store, double now)
{
    bool dropped = false;
    {
        const QMutexLocker lock(&store.write_mutex());
        dropped = migrate_structure(store, now);
        // Another process may be doing the same: what a table lacks is asked and added in one.
        Transaction transaction(store.connection());
        run_schema_script(store);
        ensure_mail_memory(store);
        add_missing_columns(store);
        create_late_indexes(store);
        store.exec(QStringLiteral("DROP TABLE IF EXISTS hero_dict"));
        store.exec(QStringLiteral("DROP TABLE IF EXISTS item_dict"));
        transaction.commit(QStringLiteral("schema commit failed"));
    }
    look_after_derived_schema(store);
    {
        const QMutexLocker lock(&store.write_mutex());
        backfill_fort_flags(store);
    }
    try {
        link_fort_to_chains(store);
    } catch (const std::exception &) {
        // Already logged, and every import links again: no reason not to start.
    }
    return dropped;
}

} // namespace tally::data
