#include "data/store/chain_slice.h"
#include "data/store/sql_conditions.h"
#include "data/store/sql_values.h"
#include "data/store/tally_db.h"
#include "data/store/thread_connection.h"

#include <QLoggingCategory>
#include <QMutexLocker>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace tally::data {

namespace {

Q_LOGGING_CATEGORY(store_log, "tally.store")

struct SchemaObject {
    const char *type;
    QString name;
    QString sql; ///< as the database keeps it
};

/// Deletes what is known of a chain the first time that one of its rows changes. `chain` is its
/// name, `condition` says when the change concerns it.
QString trigger_body(const QString &chain, const QString &condition)
{
    return QStringLiteral(R"sql(
WHEN %2NOT EXISTS (SELECT 1 FROM stale_chains WHERE file_name = %1)
BEGIN
  DELETE FROM chain_slice_loot
  WHERE slice_id IN (SELECT id FROM chain_slices WHERE file_name = %1);
  DELETE FROM chain_slices WHERE file_name = %1;
  INSERT INTO stale_chains VALUES (%1);
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
     "NEW.rowid <> OLD.rowid AND EXISTS (SELECT 1 FROM %1 WHERE rowid = NEW.rowid) AND "},
};

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
  loot_rows INTEGER NOT NULL /* of all the chain, at its first slice */,
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
                                   trigger_body(with_table(chain), with_table(condition))});
        }
    }
    return objects;
}

// A name stays inside the database, for it need not come out of it as it went in: texts are any
// bytes there, and a hand can write bytes that are no text.
const QString next_stale_chain = QStringLiteral("(SELECT MIN(file_name) FROM stale_chains)");

const QString player_name_if_text =
    QStringLiteral("CASE typeof(player_name) WHEN 'text' THEN player_name END");

/// Reads numbers; anything else that a hand has written counts as missing.
class NumberReader {
public:
    std::optional<double> operator()(const QVariant &value)
    {
        if (value.isNull())
            return std::nullopt;
        const bool is_number =
            value.typeId() == QMetaType::Double || value.typeId() == QMetaType::LongLong;
        others_ += is_number ? 0 : 1;
        return is_number ? std::optional(value.toDouble()) : std::nullopt;
    }
    int others() const { return others_; }

private:
    int others_ = 0;
};

SliceKey read_slice_key(const QSqlQuery &row, int first_column, NumberReader &number)
{
    SliceKey key;
    int column = first_column;
    for (std::optional<double> &value : key.numbers)
        value = number(row.value(column++));
    if (!row.isNull(column))
        key.player_name = row.value(column).toString();
    return key;
}

} // namespace

bool TallyDb::has_slice_schema(const QSqlDatabase &db)
{
    const std::vector<SchemaObject> schema = slice_schema();
    return std::all_of(schema.begin(), schema.end(), [&](const SchemaObject &object) {
        return exec_prepared(
                   db, QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = ? AND sql = ?"),
                   {object.name, object.sql})
            .next();
    });
}

// Anything that is not as this build makes it (a table was dropped with its triggers, another
// build packs differently) lets all slices be made anew.
void TallyDb::ensure_chain_slices(const QSqlDatabase &db)
{
    if (has_slice_schema(db))
        return;
    const std::vector<SchemaObject> schema = slice_schema();
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

void TallyDb::look_after_slices(const QSqlDatabase &db) const
{
    const qint64 version = schema_version();
    if (ThreadConnection &own = thread_connection(); own.sliced_schema != version) {
        ensure_chain_slices(db);
        own.sliced_schema = schema_version();
    }
}

bool TallyDb::slices_complete() const
{
    ThreadConnection &own = thread_connection();
    if (own.sliced_schema != schema_version()) {
        if (!has_slice_schema(own.db))
            return false;
        own.sliced_schema = schema_version();
    }
    return !any_row(QStringLiteral("SELECT 1 FROM stale_chains LIMIT 1"), {});
}

void TallyDb::complete_chain_slices(const std::atomic<bool> *cancel)
{
    const QSqlDatabase db = connection();
    {
        const QMutexLocker lock(&write_mutex_);
        look_after_slices(db);
        if (!std::exchange(slices_counted_, true))
            mark_miscounted_chains(db);
    }
    while (!slices_complete() && !(cancel && *cancel)) {
        const QMutexLocker lock(&write_mutex_);
        Transaction transaction(db);
        slice_stale_chains();
        transaction.commit(QStringLiteral("chain slices commit failed"));
    }
}

// The triggers see all changes, but whoever takes them away and puts them back is not seen.
void TallyDb::mark_miscounted_chains(const QSqlDatabase &db)
{
    constexpr const char *all_counted = R"sql(
        SELECT 1 WHERE (SELECT COUNT(*) FROM reports) =
                       (SELECT IFNULL(SUM(rounds), 0) FROM chain_slices)
                   AND (SELECT COUNT(*) FROM loot) =
                       (SELECT IFNULL(SUM(loot_rows), 0) FROM chain_slices))sql";
    constexpr const char *mark[] = {
        R"sql(
        INSERT OR IGNORE INTO stale_chains
        WITH stored AS (
          SELECT file_name, COUNT(*) AS rounds,
                 (SELECT COUNT(*) FROM loot l WHERE l.file_name = r.file_name) AS loot_rows
          FROM reports r
          GROUP BY file_name
        ), sliced AS (
          SELECT file_name, SUM(rounds) AS rounds, SUM(loot_rows) AS loot_rows
          FROM chain_slices
          GROUP BY file_name
        )
        SELECT file_name FROM (SELECT * FROM stored EXCEPT SELECT * FROM sliced)
        UNION
        SELECT file_name FROM (SELECT * FROM sliced EXCEPT SELECT * FROM stored))sql",
        R"sql(
        DELETE FROM chain_slice_loot WHERE slice_id IN (
          SELECT id FROM chain_slices WHERE file_name IN (SELECT file_name FROM stale_chains)))sql",
        R"sql(
        DELETE FROM chain_slices WHERE file_name IN (SELECT file_name FROM stale_chains))sql"};
    if (exec_prepared(db, QString::fromLatin1(all_counted)).next())
        return;
    Transaction transaction(db);
    for (const char *sql : mark)
        exec_prepared(db, QString::fromLatin1(sql));
    transaction.commit(QStringLiteral("chain slices commit failed"));
}

/// Slices the next stale chains, in the order of names: few enough not to keep other writers
/// waiting. To be called in a write transaction.
void TallyDb::slice_stale_chains() const
{
    for (int chain = 0; chain < 200 && slice_next_chain(); ++chain) {
    }
}

/// \return false if no chain is stale
bool TallyDb::slice_next_chain() const
{
    QString chain;
    {
        auto select = kept(QStringLiteral("SELECT ") + next_stale_chain);
        QSqlQuery &row = select.exec({});
        if (!row.next() || row.isNull(0))
            return false;
        chain = row.value(0).toString();
    }
    NumberReader number;
    std::unordered_map<qint64, std::vector<LootEntry>> loot; // by the row of the round
    int loot_rows = 0;
    {
        auto select_loot = kept(QStringLiteral(R"sql(
            SELECT r.rowid, l.item_type, l.item_subtype, l.value
            FROM loot l
            LEFT JOIN reports r ON r.file_name = l.file_name AND r.round_no = l.round_no
            WHERE l.file_name = %1
            ORDER BY l.id)sql")
                                    .arg(next_stale_chain));
        QSqlQuery &rows = select_loot.exec({});
        for (; rows.next(); ++loot_rows) {
            if (rows.isNull(0))
                continue;
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
            kept(QStringLiteral("SELECT rowid, level, npc_ctid, %1, %2 FROM reports "
                                "WHERE file_name = %3 ORDER BY round_no")
                     .arg(QLatin1StringView(slice_number_columns), player_name_if_text,
                          next_stale_chain));
        QSqlQuery &rows = select_rounds.exec({});
        while (rows.next()) {
            const qint64 row = rows.value(0).toLongLong();
            slicer.add({row, read_slice_key(rows, 3, number), number(rows.value(1)),
                        number(rows.value(2)), std::move(loot[row])});
        }
    }
    if (number.others() > 0)
        qCWarning(store_log).noquote()
            << number.others() << "values of" << chain << "are no numbers and count as missing";
    store_slices(slicer, loot_rows);
    kept(QStringLiteral("DELETE FROM stale_chains WHERE file_name = ") + next_stale_chain).exec({});
    return true;
}

/// \param loot_rows of the whole chain
void TallyDb::store_slices(const ChainSlicer &slicer, int loot_rows) const
{
    // What is a text comes from the round, so that it is the same byte for byte.
    static const QString insert_sql =
        QStringLiteral("INSERT INTO chain_slices (file_name, player_name, first_id, %1, rounds, "
                       "wins, honor, loot_rows, fights) "
                       "SELECT file_name, %2, %3 FROM reports WHERE rowid = ?")
            .arg(QLatin1StringView(slice_number_columns), player_name_if_text, placeholders(15));
    auto insert = kept(insert_sql);
    auto insert_loot =
        kept(QStringLiteral("INSERT INTO chain_slice_loot (slice_id, items) VALUES (?, ?)"));
    QVariant first_id;
    for (const ChainSlice &slice : slicer.slices()) {
        QVariantList values = {first_id};
        for (const std::optional<double> &number : slice.key.numbers)
            values << nullable(number);
        values << slice.rounds << slice.wins << slice.honor << (first_id.isNull() ? loot_rows : 0)
               << packed(slice.fights) << slice.row;
        const QVariant id = insert.exec(values).lastInsertId();
        if (first_id.isNull())
            first_id = id;
        if (!slice.items.empty())
            insert_loot.exec({id, packed(slice.items)});
    }
}

} // namespace tally::data
