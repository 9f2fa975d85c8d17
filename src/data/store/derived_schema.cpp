#include "data/store/derived_schema.h"

#include "data/store/store_connection.h"

#include <QHash>

#include <algorithm>
#include <vector>

namespace tally::data {

namespace {

struct SchemaObject {
    const char *type;
    QString name;
    QString sql; ///< as the database keeps it
};

struct Definition {
    const char *name;
    const char *text;
};

constexpr Definition slice_tables[] = {
    {"chain_slices", R"sql((
  id INTEGER PRIMARY KEY,
  file_name TEXT NOT NULL,
  first_id INTEGER /* of the chain's first slice; NULL in that */,
  npc_btype REAL,
  is_fort_round INTEGER,
  is_free_ap INTEGER,
  chain_start_time REAL,
  chain_end_time REAL,
  file_mtime REAL,
  hero_id_1 REAL,
  hero_id_2 REAL,
  player_id REAL,
  player_name TEXT,
  rounds INTEGER NOT NULL,
  wins INTEGER NOT NULL,
  honor INTEGER NOT NULL,
  loot_rows INTEGER NOT NULL /* of all the chain, at its first slice */,
  fights BLOB NOT NULL /* 1 */
))sql"},
    {"chain_slice_loot", R"sql((
  slice_id INTEGER PRIMARY KEY,
  items BLOB NOT NULL /* 1 */
))sql"},
    {"stale_chains", "(file_name TEXT PRIMARY KEY NOT NULL) WITHOUT ROWID"},
};

constexpr Definition slice_indexes[] = {
    {"idx_slices_file", "chain_slices(file_name, chain_start_time, chain_end_time)"},
    {"idx_slices_time", "chain_slices(COALESCE(chain_start_time, file_mtime))"},
    // With all that the honor since a moment is counted from, so that no row is looked up for it.
    {"idx_slices_mail", "chain_slices(COALESCE(file_mtime, chain_end_time, chain_start_time), "
                        "honor, file_mtime, chain_end_time, chain_start_time)"},
};

/// Deletes what is known of a chain the first time that one of its rows changes. `chain` is its
/// name, `condition` says when the change concerns it. Later changes of a stale chain need not be
/// counted: no result is remembered by the count alone while a chain is stale.
QString stale_trigger_body(const QString &chain, const QString &condition)
{
    return QStringLiteral(R"sql(
WHEN %2NOT EXISTS (SELECT 1 FROM stale_chains WHERE file_name = %1)
BEGIN
  DELETE FROM chain_slice_loot
  WHERE slice_id IN (SELECT id FROM chain_slices WHERE file_name = %1);
  DELETE FROM chain_slices WHERE file_name = %1;
  INSERT INTO stale_chains VALUES (%1);
  UPDATE report_changes SET count = count + 1;
END)sql")
        .arg(chain, condition);
}

struct RowChange {
    const char *name; ///< of the trigger, behind the table's
    const char *event;
    const char *chain;     ///< of the row; %1 is the table
    const char *condition; ///< likewise
};

// SQLite fires no trigger for a row that REPLACE removes. One with the key of the new row is of the
// same chain; one with its row number may be of any.
constexpr RowChange row_changes[] = {
    {"insert_new", "AFTER INSERT", "NEW.file_name", ""},
    {"delete_old", "AFTER DELETE", "OLD.file_name", ""},
    {"update_old", "AFTER UPDATE", "OLD.file_name", ""},
    {"update_new", "AFTER UPDATE", "NEW.file_name", ""},
    {"insert_over", "BEFORE INSERT", "(SELECT file_name FROM %1 WHERE rowid = NEW.rowid)",
     "EXISTS (SELECT 1 FROM %1 WHERE rowid = NEW.rowid) AND "},
    {"update_over", "BEFORE UPDATE", "(SELECT file_name FROM %1 WHERE rowid = NEW.rowid)",
     "NEW.rowid <> OLD.rowid AND EXISTS (SELECT 1 FROM %1 WHERE rowid = "
     "NEW.rowid) AND "},
};

/// Those of the slices and of the count itself.
std::vector<SchemaObject> slice_schema()
{
    std::vector<SchemaObject> objects;
    for (const auto &[name, definition] : slice_tables)
        objects.push_back({"TABLE", QString::fromLatin1(name),
                           QStringLiteral("CREATE TABLE %1 %2")
                               .arg(QLatin1StringView(name), QLatin1StringView(definition))});
    objects.push_back({"TABLE", QStringLiteral("report_changes"),
                       QStringLiteral("CREATE TABLE report_changes (id INTEGER "
                                      "PRIMARY KEY CHECK (id = 1), "
                                      "count INTEGER NOT NULL, "
                                      "slices_removed INTEGER NOT NULL)")});
    objects.push_back({"TRIGGER", QStringLiteral("count_slices_removed"),
                       QStringLiteral("CREATE TRIGGER count_slices_removed AFTER DELETE ON "
                                      "chain_slices\nBEGIN UPDATE report_changes "
                                      "SET slices_removed = slices_removed + 1; END")});
    for (const QString &table : {QStringLiteral("reports"), QStringLiteral("loot")}) {
        for (const auto &[name_text, event, chain, condition] : row_changes) {
            const auto with_table = [&table](const char *text) {
                return QString::fromLatin1(text).replace(QStringLiteral("%1"), table);
            };
            const QString name =
                QStringLiteral("stale_%1_%2").arg(table, QLatin1StringView(name_text));
            objects.push_back({"TRIGGER", name,
                               QStringLiteral("CREATE TRIGGER %1 %2 ON %3")
                                       .arg(name, QLatin1StringView(event), table) +
                                   stale_trigger_body(with_table(chain), with_table(condition))});
        }
    }
    return objects;
}

std::vector<SchemaObject> slice_index_schema()
{
    std::vector<SchemaObject> objects;
    for (const auto &[name, definition] : slice_indexes)
        objects.push_back({"INDEX", QString::fromLatin1(name),
                           QStringLiteral("CREATE INDEX %1 ON %2")
                               .arg(QLatin1StringView(name), QLatin1StringView(definition))});
    return objects;
}

/// Those that count changes of the reports that have no slices.
std::vector<SchemaObject> counting_schema()
{
    std::vector<SchemaObject> objects;
    for (const char *table : {"field_reports", "trial_reports", "trial_participants", "trial_loot",
                              "fort_reports", "fort_loot"}) {
        for (const char *event : {"INSERT", "DELETE", "UPDATE"}) {
            const QString name =
                QStringLiteral("count_%1_%2")
                    .arg(QLatin1StringView(table), QString::fromLatin1(event).toLower());
            objects.push_back(
                {"TRIGGER", name,
                 QStringLiteral("CREATE TRIGGER %1 AFTER %2 ON %3\n"
                                "BEGIN UPDATE report_changes SET count = count + 1; END")
                     .arg(name, QLatin1StringView(event), QLatin1StringView(table))});
        }
    }
    return objects;
}

/// By name, as the database keeps them.
using StoredSchema = QHash<QString, QString>;

StoredSchema stored_schema(const StoreConnection &store)
{
    StoredSchema schema;
    auto rows = store.exec(QStringLiteral("SELECT name, sql FROM main.sqlite_master"));
    while (rows.next())
        schema.insert(rows.value(0).toString(), rows.value(1).toString());
    return schema;
}

bool is_as_built(const StoredSchema &stored, const std::vector<SchemaObject> &objects)
{
    return std::all_of(objects.begin(), objects.end(), [&](const SchemaObject &object) {
        return stored.value(object.name) == object.sql;
    });
}

void make(const StoreConnection &store, const std::vector<SchemaObject> &objects)
{
    for (auto object = objects.rbegin(); object != objects.rend(); ++object)
        store.exec(QStringLiteral("DROP %1 IF EXISTS main.%2")
                       .arg(QLatin1StringView(object->type), object->name));
    for (const SchemaObject &object : objects)
        store.exec(object.sql);
}

} // namespace

bool has_derived_schema(const StoreConnection &store)
{
    const StoredSchema stored = stored_schema(store);
    return is_as_built(stored, slice_schema()) && is_as_built(stored, slice_index_schema()) &&
           is_as_built(stored, counting_schema());
}

void make_derived_schema(const StoreConnection &store)
{
    StoredSchema stored = stored_schema(store);
    // A table that was dropped took its triggers along, and another build packs differently.
    if (const auto objects = slice_schema(); !is_as_built(stored, objects)) {
        make(store, objects);
        store.exec(QStringLiteral("INSERT INTO main.report_changes VALUES (1, 0, 0)"));
        store.exec(QStringLiteral("INSERT INTO main.stale_chains SELECT DISTINCT file_name "
                                  "FROM reports"));
        stored = stored_schema(store); // the indexes went with their table
    }
    if (const auto objects = slice_index_schema(); !is_as_built(stored, objects))
        make(store, objects);
    if (const auto objects = counting_schema(); !is_as_built(stored, objects))
        make(store, objects);
}

QStringList slice_tables_in(const QString &schema)
{
    QStringList statements;
    for (const auto &[name, definition] : slice_tables)
        statements << QStringLiteral("CREATE TABLE %1.%2 %3")
                          .arg(schema, QLatin1StringView(name), QLatin1StringView(definition));
    for (const auto &[name, definition] : slice_indexes)
        statements << QStringLiteral("CREATE INDEX %1.%2 ON %3")
                          .arg(schema, QLatin1StringView(name), QLatin1StringView(definition));
    return statements;
}

} // namespace tally::data
