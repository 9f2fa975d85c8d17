#include "import_floor.h"

#include "data/store/tally_db.h"

#include <QDir>
#include <QFile>

#include <memory>
#include <stdexcept>

#include <sqlite3.h>

namespace tally::bench {
namespace {

/// A table's insert, and its rows with the file that each belongs to in front.
struct Table {
    const char *name;
    const char *select;
};

// Parents before their children; children keep their row numbers, which name their parents.
constexpr Table tables[] = {
    {"reports", "SELECT file_name, * FROM reports ORDER BY file_name, round_no"},
    {"loot", "SELECT file_name, * FROM loot ORDER BY id"},
    {"field_reports", "SELECT file_name, * FROM field_reports ORDER BY file_name, attack_seq"},
    {"trial_reports", "SELECT file_name, * FROM trial_reports"},
    {"trial_participants", "SELECT file_name, * FROM trial_participants ORDER BY id"},
    {"trial_loot", "SELECT p.file_name, l.* FROM trial_loot l "
                   "JOIN trial_participants p ON p.id = l.participant_id ORDER BY l.id"},
    {"fort_reports", "SELECT file_name, * FROM fort_reports"},
    {"fort_loot", "SELECT file_name, * FROM fort_loot ORDER BY id"},
};

constexpr const char *lookups[] = {
    "SELECT 1 FROM reports WHERE file_name = ? LIMIT 1",
    "SELECT 1 FROM field_reports WHERE file_name = ? LIMIT 1",
    "SELECT 1 FROM trial_reports WHERE file_name = ? LIMIT 1",
    "SELECT 1 FROM fort_reports WHERE file_name = ? LIMIT 1",
};

using Database = std::unique_ptr<sqlite3, decltype([](sqlite3 *db) { sqlite3_close(db); })>;
using Statement =
    std::unique_ptr<sqlite3_stmt, decltype([](sqlite3_stmt *s) { sqlite3_finalize(s); })>;

void check(bool ok, sqlite3 *db)
{
    if (!ok)
        throw std::runtime_error(sqlite3_errmsg(db));
}

Database open_store(const QString &path)
{
    sqlite3 *db = nullptr;
    const int result = sqlite3_open(path.toUtf8().constData(), &db);
    Database owner(db);
    check(result == SQLITE_OK, db);
    for (const char *pragma :
         {"PRAGMA foreign_keys = ON", "PRAGMA journal_mode = WAL", "PRAGMA synchronous = NORMAL"})
        check(sqlite3_exec(db, pragma, nullptr, nullptr, nullptr) == SQLITE_OK, db);
    return owner;
}

Statement prepare(sqlite3 *db, const QByteArray &sql)
{
    sqlite3_stmt *statement = nullptr;
    check(sqlite3_prepare_v2(db, sql.constData(), -1, &statement, nullptr) == SQLITE_OK, db);
    return Statement(statement);
}

QByteArray insert_text(sqlite3 *db, const char *table)
{
    const Statement any = prepare(db, QByteArray("SELECT * FROM ") + table);
    QByteArrayList places(sqlite3_column_count(any.get()), "?");
    return QByteArray("INSERT INTO ") + table + " VALUES (" + places.join(',') + ')';
}

QStringList mail_names(const QString &mails)
{
    return QDir(mails).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name);
}

QByteArray read(const QString &path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw std::runtime_error("cannot read a mail");
    return file.read(std::min(size, file.size()));
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        file.write(content) != content.size())
        throw std::runtime_error("cannot copy a mail");
}

} // namespace

ImportFloor::ImportFloor(const QString &imported_store, const QString &mails) : mails_(mails)
{
    const Database db = open_store(imported_store);
    for (size_t table = 0; table < std::size(tables); ++table) {
        const Statement select = prepare(db.get(), tables[table].select);
        const int columns = sqlite3_column_count(select.get());
        while (sqlite3_step(select.get()) == SQLITE_ROW) {
            const auto text = [&](int column) {
                return std::string(
                    reinterpret_cast<const char *>(sqlite3_column_text(select.get(), column)));
            };
            Row row{table, {}};
            for (int column = 1; column < columns; ++column) {
                switch (sqlite3_column_type(select.get(), column)) {
                case SQLITE_INTEGER:
                    row.cells.emplace_back(qint64{sqlite3_column_int64(select.get(), column)});
                    break;
                case SQLITE_FLOAT:
                    row.cells.emplace_back(sqlite3_column_double(select.get(), column));
                    break;
                case SQLITE_TEXT:
                    row.cells.emplace_back(text(column));
                    break;
                default:
                    row.cells.emplace_back();
                }
            }
            rows_by_file_[QByteArray::fromStdString(text(0))].push_back(std::move(row));
        }
    }
}

void ImportFloor::import(const QString &folder) const
{
    const QString store = QDir(folder).filePath(QStringLiteral("floor.db"));
    data::TallyDb(store).init_schema();
    const Database db = open_store(store);
    std::vector<Statement> inserts;
    for (const Table &table : tables)
        inserts.push_back(prepare(db.get(), insert_text(db.get(), table.name)));
    const auto exec = [&db](const char *sql) {
        check(sqlite3_exec(db.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK, db.get());
    };

    const QDir raw(QDir(folder).filePath(QStringLiteral("raw")));
    QDir().mkpath(raw.path());
    for (const QString &name : mail_names(mails_)) {
        const QString path = QDir(mails_).filePath(name);
        write(raw.filePath(name), read(path, std::numeric_limits<qint64>::max()));
        const auto found = rows_by_file_.constFind(name.toUtf8());
        if (found == rows_by_file_.cend())
            continue;
        exec("BEGIN");
        for (const Row &row : *found) {
            sqlite3_stmt *insert = inserts[row.table].get();
            int position = 0;
            for (const Cell &cell : row.cells) {
                ++position;
                if (const auto *integer = std::get_if<qint64>(&cell))
                    sqlite3_bind_int64(insert, position, *integer);
                else if (const auto *real = std::get_if<double>(&cell))
                    sqlite3_bind_double(insert, position, *real);
                else if (const auto *text = std::get_if<std::string>(&cell))
                    sqlite3_bind_text(insert, position, text->data(),
                                      static_cast<int>(text->size()), SQLITE_STATIC);
                else
                    sqlite3_bind_null(insert, position);
            }
            check(sqlite3_step(insert) == SQLITE_DONE, db.get());
            sqlite3_reset(insert);
        }
        exec("COMMIT");
    }
}

void ImportFloor::look_up_again(const QString &folder) const
{
    const Database db = open_store(QDir(folder).filePath(QStringLiteral("tally-import.db")));
    std::vector<Statement> selects;
    for (const char *lookup : lookups)
        selects.push_back(prepare(db.get(), lookup));
    constexpr qint64 head_size = 32768;
    for (const QString &name : mail_names(mails_)) {
        const QByteArray head = read(QDir(mails_).filePath(name), head_size);
        const QByteArray key = name.toUtf8();
        for (const Statement &select : selects) {
            sqlite3_bind_text(select.get(), 1, key.constData(), static_cast<int>(key.size()),
                              SQLITE_STATIC);
            sqlite3_step(select.get());
            sqlite3_reset(select.get());
        }
    }
}

} // namespace tally::bench
