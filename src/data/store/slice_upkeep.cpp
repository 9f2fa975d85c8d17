#include "data/store/slice_upkeep.h"

#include "data/store/derived_schema.h"
#include "data/store/round_slicer.h"
#include "data/store/sql_conditions.h"
#include "data/store/sql_values.h"

#include <QLoggingCategory>
#include <QMutexLocker>

#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace tally::data {

namespace {

Q_LOGGING_CATEGORY(store_log, "tally.store")

const QString main_db = QStringLiteral("main");
/// Its tables hide those of the same name in the store.
const QString temp_db = QStringLiteral("temp");

const QString player_name_if_text =
    QStringLiteral("CASE typeof(player_name) WHEN 'text' THEN player_name END");

// A name stays inside the database, for it need not come out of it as it went in: texts are any
// bytes there, and a hand can write bytes that are no text.
QString next_stale_chain(const QString &database)
{
    return QStringLiteral("(SELECT MIN(file_name) FROM %1.stale_chains)").arg(database);
}

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

struct ChainLoot {
    std::unordered_map<qint64, std::vector<LootEntry>> of_rounds; ///< by the row of the round
    int rows = 0;                                                 ///< with those of no round
};

ChainLoot read_loot(const StoreConnection &store, const QString &chain, NumberReader &number)
{
    ChainLoot loot;
    auto select = store.kept(QStringLiteral(R"sql(
        SELECT r.rowid, l.item_type, l.item_subtype, l.value
        FROM main.loot l
        LEFT JOIN main.reports r ON r.file_name = l.file_name AND r.round_no = l.round_no
        WHERE l.file_name = %1
        ORDER BY l.id)sql")
                                 .arg(chain));
    QSqlQuery &rows = select.exec({});
    for (; rows.next(); ++loot.rows) {
        if (rows.isNull(0))
            continue;
        LootEntry entry;
        entry.item_type = number(rows.value(1));
        entry.item_subtype = number(rows.value(2));
        entry.value = number(rows.value(3));
        loot.of_rounds[rows.value(0).toLongLong()].push_back(std::move(entry));
    }
    return loot;
}

ChainSlicer slice_rounds(const StoreConnection &store, const QString &chain, ChainLoot &loot,
                         NumberReader &number)
{
    ChainSlicer slicer;
    auto select =
        store.kept(QStringLiteral("SELECT rowid, level, npc_ctid, %1, %2 FROM main.reports "
                                  "WHERE file_name = %3 ORDER BY round_no")
                       .arg(QLatin1StringView(slice_number_columns), player_name_if_text, chain));
    QSqlQuery &rows = select.exec({});
    while (rows.next()) {
        const qint64 row = rows.value(0).toLongLong();
        slicer.add({row, read_slice_key(rows, 3, number), number(rows.value(1)),
                    number(rows.value(2)), std::move(loot.of_rounds[row])});
    }
    return slicer;
}

void store_slices_in(const StoreConnection &store, const QString &database,
                     const ChainSlicer &slicer, int loot_rows)
{
    // What is a text comes from the round, so that it is the same byte for byte.
    auto insert = store.kept(
        QStringLiteral("INSERT INTO %1.chain_slices (file_name, player_name, first_id, %2, "
                       "rounds, "
                       "wins, honor, loot_rows, fights) "
                       "SELECT file_name, %3, %4 FROM main.reports WHERE rowid = ?")
            .arg(database, QLatin1StringView(slice_number_columns), player_name_if_text,
                 placeholders(15)));
    auto insert_loot =
        store.kept(QStringLiteral("INSERT INTO %1.chain_slice_loot (slice_id, items) VALUES (?, ?)")
                       .arg(database));
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

/// Slices the first stale chain in the order of names. \return false if no chain is stale
bool slice_next_chain(const StoreConnection &store, const QString &database)
{
    const QString chain = next_stale_chain(database);
    QString name;
    {
        auto select = store.kept(QStringLiteral("SELECT ") + chain);
        QSqlQuery &row = select.exec({});
        if (!row.next() || row.isNull(0))
            return false;
        name = row.value(0).toString();
    }
    NumberReader number;
    ChainLoot loot = read_loot(store, chain, number);
    store_slices_in(store, database, slice_rounds(store, chain, loot, number), loot.rows);
    if (number.others() > 0)
        qCWarning(store_log).noquote()
            << number.others() << "values of" << name << "are no numbers and count as missing";
    store
        .kept(
            QStringLiteral("DELETE FROM %1.stale_chains WHERE file_name = %2").arg(database, chain))
        .exec({});
    return true;
}

qint64 schema_version(const StoreConnection &store)
{
    auto statement = store.kept(QStringLiteral("SELECT schema_version FROM pragma_schema_version"));
    QSqlQuery &row = statement.exec({});
    row.next();
    return row.value(0).toLongLong();
}

/// Whether the triggers can be trusted; looked after again whenever the schema has changed.
bool derived_schema_is_right(const StoreConnection &store)
{
    const qint64 version = schema_version(store);
    std::optional<qint64> &known = store.derived_schema();
    if (known != version)
        known = has_derived_schema(store) ? std::optional(version) : std::nullopt;
    return known.has_value();
}

ChangeStamp stamp_of_anything(const StoreConnection &store)
{
    auto statement = store.kept(QStringLiteral("SELECT schema_version, (SELECT data_version "
                                               "FROM pragma_data_version), total_changes() "
                                               "FROM pragma_schema_version"));
    QSqlQuery &row = statement.exec({});
    row.next();
    return {-1, row.value(0).toLongLong(), row.value(1).toLongLong(), row.value(2).toLongLong()};
}

bool has_own_slices(const StoreConnection &store)
{
    return store.any_row(
        QStringLiteral("SELECT 1 FROM sqlite_temp_master WHERE name = 'chain_slices'"));
}

void drop_own_slices(const StoreConnection &store)
{
    for (const char *table : {"chain_slices", "chain_slice_loot", "stale_chains"})
        store.exec(QStringLiteral("DROP TABLE IF EXISTS temp.%1").arg(QLatin1StringView(table)));
    store.own_slices() = std::nullopt;
}

void make_own_slices(const StoreConnection &store)
{
    drop_own_slices(store);
    // The disk may be full.
    QSqlQuery(store.connection()).exec(QStringLiteral("PRAGMA temp_store = MEMORY"));
    for (const QString &sql : slice_tables_in(temp_db))
        store.exec(sql);
    if (derived_schema_is_right(store)) {
        for (const char *table : {"chain_slices", "chain_slice_loot", "stale_chains"})
            store.exec(QStringLiteral("INSERT INTO temp.%1 SELECT * FROM main.%1")
                           .arg(QLatin1StringView(table)));
    } else {
        store.exec(QStringLiteral("INSERT INTO temp.stale_chains SELECT DISTINCT file_name "
                                  "FROM main.reports"));
    }
    while (slice_next_chain(store, temp_db)) {
    }
}

/// While it lives, this connection waits hardly for another program that holds the store.
class ShortPatience {
public:
    explicit ShortPatience(const StoreConnection &store) : store_(store)
    {
        QSqlQuery patience(QStringLiteral("PRAGMA busy_timeout"), store_.connection());
        usual_ms_ = patience.next() ? patience.value(0).toInt() : 0;
        set(100);
    }
    ~ShortPatience() { set(usual_ms_); }
    Q_DISABLE_COPY_MOVE(ShortPatience)

private:
    void set(int ms) const
    {
        QSqlQuery(store_.connection()).exec(QStringLiteral("PRAGMA busy_timeout = %1").arg(ms));
    }

    const StoreConnection &store_;
    int usual_ms_ = 0;
};

/// \return whether it could
bool complete_for_reading(const StoreConnection &store)
{
    constexpr int step = 200;
    try {
        while (complete_chain_slices(store, step) > 0) {
        }
        return true;
    } catch (const std::runtime_error &) {
        return false; // logged where it was thrown
    }
}

} // namespace

void look_after_derived_schema(const StoreConnection &store)
{
    if (derived_schema_is_right(store))
        return;
    const QMutexLocker lock(&store.write_mutex());
    Transaction transaction(store.connection());
    make_derived_schema(store);
    transaction.commit(QStringLiteral("derived schema commit failed"));
}

bool slices_complete(const StoreConnection &store)
{
    return derived_schema_is_right(store) &&
           !store.any_row(QStringLiteral("SELECT 1 FROM main.stale_chains LIMIT 1"));
}

int stale_chain_count(const StoreConnection &store)
{
    return derived_schema_is_right(store)
               ? store.single_int(QStringLiteral("SELECT COUNT(*) FROM main.stale_chains"))
               : store.single_int(QStringLiteral("SELECT COUNT(DISTINCT file_name) FROM reports"));
}

int complete_chain_slices(const StoreConnection &store, int chains)
{
    if (slices_complete(store))
        return 0;
    const ShortPatience patience(store);
    look_after_derived_schema(store);
    const QMutexLocker lock(&store.write_mutex());
    Transaction transaction(store.connection());
    for (int chain = 0; chain < chains && slice_next_chain(store, main_db); ++chain) {
    }
    const int left = stale_chain_count(store);
    transaction.commit(QStringLiteral("chain slices commit failed"));
    return left;
}

void mark_miscounted_chains(const StoreConnection &store)
{
    if (store
            .exec(QStringLiteral(R"sql(
            SELECT 1 WHERE (SELECT COUNT(*) FROM main.reports) =
                           (SELECT IFNULL(SUM(rounds), 0) FROM main.chain_slices)
                       AND (SELECT COUNT(*) FROM main.loot) =
                           (SELECT IFNULL(SUM(loot_rows), 0) FROM main.chain_slices))sql"))
            .next())
        return;
    const QMutexLocker lock(&store.write_mutex());
    Transaction transaction(store.connection());
    const qint64 marked = store
                              .exec(QStringLiteral(R"sql(
        INSERT OR IGNORE INTO main.stale_chains
        WITH stored AS (
          SELECT file_name, COUNT(*) AS rounds,
                 (SELECT COUNT(*) FROM main.loot l WHERE l.file_name = r.file_name) AS loot_rows
          FROM main.reports r
          GROUP BY file_name
        ), sliced AS (
          SELECT file_name, SUM(rounds) AS rounds, SUM(loot_rows) AS loot_rows
          FROM main.chain_slices
          GROUP BY file_name
        )
        SELECT file_name FROM (SELECT * FROM stored EXCEPT SELECT * FROM sliced)
        UNION
        SELECT file_name FROM (SELECT * FROM sliced EXCEPT SELECT * FROM stored))sql"))
                              .numRowsAffected();
    if (marked == 0)
        return; // loot of no chain
    for (const char *sql : {"DELETE FROM main.chain_slice_loot WHERE slice_id IN (SELECT id FROM "
                            "main.chain_slices "
                            "WHERE file_name IN (SELECT file_name FROM main.stale_chains))",
                            "DELETE FROM main.chain_slices "
                            "WHERE file_name IN (SELECT file_name FROM main.stale_chains)",
                            "UPDATE main.report_changes SET count = count + 1"})
        store.exec(QString::fromLatin1(sql));
    transaction.commit(QStringLiteral("chain slices commit failed"));
    qCWarning(store_log) << marked << "chains are added up anew: their rows were changed unseen";
}

void store_slices(const StoreConnection &store, const ChainSlicer &slicer, int loot_rows)
{
    store_slices_in(store, main_db, slicer, loot_rows);
}

ChangeStamp change_stamp(const StoreConnection &store)
{
    if (!derived_schema_is_right(store))
        return stamp_of_anything(store);
    ChangeStamp stamp;
    bool is_stale = true;
    {
        auto statement = store.kept(
            QStringLiteral("SELECT schema_version, (SELECT count FROM main.report_changes), "
                           "EXISTS (SELECT 1 FROM main.stale_chains) FROM pragma_schema_version"));
        QSqlQuery &row = statement.exec({});
        row.next();
        stamp.schema = row.value(0).toLongLong();
        stamp.reports = row.value(1).toLongLong();
        is_stale = row.isNull(1) || row.value(2).toBool() || stamp.schema != store.derived_schema();
    }
    return is_stale ? stamp_of_anything(store) : stamp;
}

SliceSnapshot::SliceSnapshot(const StoreConnection &store)
{
    snapshot_.emplace(store);
    const auto has_right_own_slices = [&store] {
        return store.own_slices() == stamp_of_anything(store) && has_own_slices(store);
    };
    if (is_of_commits() && !slices_complete(store) && !has_right_own_slices()) {
        snapshot_.reset();
        complete_for_reading(store);
        snapshot_.emplace(store);
    }
    if (slices_complete(store)) {
        if (has_own_slices(store))
            drop_own_slices(store);
    } else if (!has_right_own_slices()) {
        make_own_slices(store);
        // Undoing somebody's transaction would undo them, too.
        if (is_of_commits())
            store.own_slices() = stamp_of_anything(store);
    }
}

} // namespace tally::data
