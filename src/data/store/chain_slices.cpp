#include "data/store/chain_slice.h"
#include "data/store/sql_values.h"
#include "data/store/tally_db.h"

#include <QMutexLocker>
#include <QStringList>

#include <algorithm>
#include <map>
#include <utility>

namespace tally::data {

namespace {

struct SchemaObject {
    const char *type;
    QString name;
    QString sql; ///< as the database keeps it
};

/// Deletes what is known of a chain the first time that one of its rows changes.
QString trigger_body(const QString &row)
{
    return QStringLiteral(R"sql(
WHEN NOT EXISTS (SELECT 1 FROM stale_chains WHERE file_name = %1.file_name)
BEGIN
  DELETE FROM chain_slice_loot
  WHERE slice_id IN (SELECT id FROM chain_slices WHERE file_name = %1.file_name);
  DELETE FROM chain_slices WHERE file_name = %1.file_name;
  INSERT INTO stale_chains VALUES (%1.file_name);
END)sql")
        .arg(row);
}

std::vector<SchemaObject> slice_schema()
{
    std::vector<SchemaObject> objects = {
        {"TABLE", QStringLiteral("chain_slices"), QStringLiteral(R"sql(CREATE TABLE chain_slices (
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
  fights BLOB NOT NULL /* 1 */
))sql")},
        {"TABLE", QStringLiteral("chain_slice_loot"),
         QStringLiteral(R"sql(CREATE TABLE chain_slice_loot (
  slice_id INTEGER PRIMARY KEY,
  items BLOB NOT NULL /* 1 */
))sql")},
        {"TABLE", QStringLiteral("stale_chains"),
         QStringLiteral(
             "CREATE TABLE stale_chains (file_name TEXT PRIMARY KEY NOT NULL) WITHOUT ROWID")},
        {"INDEX", QStringLiteral("idx_slices_file"),
         QStringLiteral("CREATE INDEX idx_slices_file "
                        "ON chain_slices(file_name, chain_start_time, chain_end_time)")},
        {"INDEX", QStringLiteral("idx_slices_time"),
         QStringLiteral("CREATE INDEX idx_slices_time "
                        "ON chain_slices(COALESCE(chain_start_time, file_mtime))")},
    };
    struct Change {
        const char *event;
        const char *row;
    };
    constexpr Change changes[] = {
        {"INSERT", "NEW"}, {"DELETE", "OLD"}, {"UPDATE", "OLD"}, {"UPDATE", "NEW"}};
    for (const char *table : {"reports", "loot"}) {
        for (const auto &[event, row] : changes) {
            const auto row_text = QString::fromLatin1(row);
            const QString name =
                QStringLiteral("stale_%1_%2_%3")
                    .arg(QLatin1StringView(table), QLatin1StringView(event), QLatin1StringView(row))
                    .toLower();
            objects.push_back(
                {"TRIGGER", name,
                 QStringLiteral("CREATE TRIGGER %1 AFTER %2 ON %3")
                         .arg(name, QLatin1StringView(event), QLatin1StringView(table)) +
                     trigger_body(row_text)});
        }
    }
    return objects;
}

QString slice_insert()
{
    return QStringLiteral(
               "INSERT INTO chain_slices (file_name, first_id, %1, rounds, wins, honor, fights) "
               "VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)")
        .arg(QLatin1StringView(slice_key_columns));
}

} // namespace

// Anything that is not as this build makes it (a table was dropped with its triggers, another
// build packs differently) lets all slices be made anew.
void TallyDb::ensure_chain_slices(const QSqlDatabase &db)
{
    const std::vector<SchemaObject> schema = slice_schema();
    const bool as_built =
        std::all_of(schema.begin(), schema.end(), [&](const SchemaObject &object) {
            return exec_prepared(
                       db, QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = ? AND sql = ?"),
                       {object.name, object.sql})
                .next();
        });
    if (as_built)
        return;
    Transaction transaction(db);
    for (auto object = schema.rbegin(); object != schema.rend(); ++object)
        exec_prepared(db, QStringLiteral("DROP %1 IF EXISTS %2")
                              .arg(QLatin1StringView(object->type), object->name));
    for (const SchemaObject &object : schema)
        exec_prepared(db, object.sql);
    exec_prepared(db, QStringLiteral("INSERT INTO stale_chains SELECT DISTINCT file_name "
                                     "FROM reports"));
    transaction.commit(QStringLiteral("chain slices commit failed"));
}

bool TallyDb::slices_complete() const
{
    return !any_row(QStringLiteral("SELECT 1 FROM stale_chains LIMIT 1"), {});
}

void TallyDb::complete_chain_slices(const std::atomic<bool> *cancel)
{
    QString last;
    while (!slices_complete() && !(cancel && *cancel)) {
        const QMutexLocker lock(&write_mutex_);
        Transaction transaction(connection());
        const QString previous = std::exchange(last, slice_stale_chains(last));
        transaction.commit(QStringLiteral("chain slices commit failed"));
        if (last == previous)
            return; // what is still stale cannot be sliced
    }
}

/// Slices the next stale chains behind a name, in the order of names: few enough not to keep other
/// writers waiting. To be called in a write transaction. \return the last chain's name.
QString TallyDb::slice_stale_chains(const QString &after) const
{
    QStringList stale;
    auto names = exec_prepared(connection(),
                               QStringLiteral("SELECT file_name FROM stale_chains "
                                              "WHERE file_name > ? ORDER BY file_name LIMIT 200"),
                               {not_null(after)});
    while (names.next())
        stale << names.value(0).toString();
    for (const QString &file_name : stale)
        slice_chain(file_name);
    return stale.isEmpty() ? after : stale.last();
}

/// \return false for a chain with values that no mail has (texts instead of numbers): it stays
/// stale, and the statistics look at the rounds themselves.
bool TallyDb::slice_chain(const QString &file_name) const
{
    bool is_plain = true;
    const auto number = [&is_plain](const QVariant &value) {
        is_plain &= value.isNull() || value.typeId() == QMetaType::Double ||
                    value.typeId() == QMetaType::LongLong;
        return number_in(value);
    };
    std::map<qint64, std::vector<LootEntry>> loot;
    {
        auto select_loot = kept(QStringLiteral("SELECT round_no, item_type, item_subtype, value "
                                               "FROM loot WHERE file_name = ? ORDER BY id"));
        QSqlQuery &rows = select_loot.exec({file_name});
        while (rows.next()) {
            LootEntry entry;
            entry.item_type = number(rows.value(1));
            entry.item_subtype = number(rows.value(2));
            entry.value = number(rows.value(3));
            loot[rows.value(0).toLongLong()].push_back(std::move(entry));
        }
    }
    ChainSlicer slicer;
    {
        auto select_rounds =
            kept(QStringLiteral("SELECT round_no, level, npc_ctid, %1 FROM reports "
                                "WHERE file_name = ? ORDER BY round_no")
                     .arg(QLatin1StringView(slice_key_columns)));
        QSqlQuery &rows = select_rounds.exec({file_name});
        while (rows.next()) {
            SlicedRound round{{},
                              number(rows.value(1)),
                              number(rows.value(2)),
                              std::move(loot[rows.value(0).toLongLong()])};
            for (int column = 3; column < 3 + slice_key_size; ++column)
                round.key << (rows.isNull(column) ? QVariant() : rows.value(column));
            slicer.add(round);
        }
    }
    if (is_plain)
        store_slices(file_name, slicer);
    return is_plain;
}

void TallyDb::store_slices(const QString &file_name, const ChainSlicer &slicer) const
{
    static const QString insert_sql = slice_insert();
    auto insert = kept(insert_sql);
    auto insert_loot =
        kept(QStringLiteral("INSERT INTO chain_slice_loot (slice_id, items) VALUES (?, ?)"));
    QVariant first_id;
    for (const ChainSlice &slice : slicer.slices()) {
        const QVariantList values =
            QVariantList{file_name, first_id} + slice.key +
            QVariantList{slice.rounds, slice.wins, slice.honor, packed(slice.fights)};
        const QVariant id = insert.exec(values).lastInsertId();
        if (first_id.isNull())
            first_id = id;
        if (!slice.items.empty())
            insert_loot.exec({id, packed(slice.items)});
    }
    kept(QStringLiteral("DELETE FROM stale_chains WHERE file_name = ?")).exec({file_name});
}

} // namespace tally::data
