#include "sqlite_writer.h"

#include <sqlite3.h>

#include <stdexcept>

namespace tally::tools {

namespace {

void check(bool ok, sqlite3 *db)
{
    if (!ok)
        throw std::runtime_error(std::string("cannot fill the store: ") + sqlite3_errmsg(db));
}

} // namespace

void SqliteWriter::Close::operator()(sqlite3 *db) const
{
    sqlite3_close_v2(db);
}

void SqliteWriter::Insert::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SqliteWriter::SqliteWriter(const QByteArray &path)
{
    sqlite3 *db = nullptr;
    const int result = sqlite3_open(path.constData(), &db);
    db_.reset(db);
    check(result == SQLITE_OK, db);
}

void SqliteWriter::exec(const QByteArray &sql)
{
    check(sqlite3_exec(db_.get(), sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK,
          db_.get());
}

SqliteWriter::Insert::Insert(SqliteWriter &writer, const QByteArray &table,
                             const QByteArray &columns)
    : db_(writer.db_.get())
{
    const QByteArray sql = "INSERT INTO " + table + " (" + columns + ") VALUES (?" +
                           QByteArray(",?").repeated(columns.count(',')) + ')';
    sqlite3_stmt *statement = nullptr;
    check(sqlite3_prepare_v2(db_, sql.constData(), -1, &statement, nullptr) == SQLITE_OK, db_);
    statement_.reset(statement);
}

void SqliteWriter::Insert::bind(double value)
{
    sqlite3_bind_double(statement_.get(), ++column_, value);
}

void SqliteWriter::Insert::bind(int value)
{
    sqlite3_bind_int(statement_.get(), ++column_, value);
}

void SqliteWriter::Insert::bind(const std::string &text)
{
    sqlite3_bind_text(statement_.get(), ++column_, text.data(), static_cast<int>(text.size()),
                      SQLITE_TRANSIENT);
}

void SqliteWriter::Insert::step()
{
    check(sqlite3_step(statement_.get()) == SQLITE_DONE, db_);
    sqlite3_reset(statement_.get());
    sqlite3_clear_bindings(statement_.get());
}

} // namespace tally::tools
