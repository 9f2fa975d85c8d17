#include "data/store/tally_db.h"

#include "data/store/thread_connection.h"

#include <QLoggingCategory>
#include <QSqlDatabase>
#include <QThread>

#include <stdexcept>

namespace tally::data {

namespace {

Q_LOGGING_CATEGORY(store_log, "tally.store")

const QString prepare_failed = QStringLiteral("prepare failed for [%1]");
const QString exec_failed = QStringLiteral("exec failed for [%1]");

constexpr const char *pragmas[] = {
    "PRAGMA foreign_keys = ON",
    "PRAGMA journal_mode = WAL",
    "PRAGMA busy_timeout = 10000",
    // With a write-ahead log a crash of the program loses nothing. A power cut may lose the last
    // transactions, but never damages the file: their mails still lie in the game's folder and are
    // imported again at the next start. In return a commit does not wait for the disk.
    "PRAGMA synchronous = NORMAL",
};

// SQLite takes the first character of a text in UTF-16 for a byte order mark if it is one, in
// either order. A mark in front of it saves it.
QVariant bindable(const QVariant &value)
{
    constexpr QChar mark(QChar::ByteOrderMark);
    constexpr QChar swapped_mark(QChar::ByteOrderSwapped);
    if (value.typeId() != QMetaType::QString)
        return value;
    const auto &text = *static_cast<const QString *>(value.constData());
    return text.startsWith(mark) || text.startsWith(swapped_mark) ? QVariant(mark + text) : value;
}

} // namespace

TallyDb::TallyDb(QString path, platform::Clock clock)
    : path_(std::move(path)), clock_(std::move(clock))
{}

TallyDb::~TallyDb()
{
    if (!connections_.hasLocalData())
        return;
    const QString name = connections_.localData()->name;
    connections_.setLocalData(nullptr); // Qt wants no handle left when it removes the connection
    QSqlDatabase::removeDatabase(name);
}

QSqlDatabase TallyDb::connection() const
{
    return thread_connection().db;
}

ThreadConnection &TallyDb::thread_connection() const
{
    if (!connections_.hasLocalData()) {
        const QString name =
            QStringLiteral("tallydb_%1_%2")
                .arg(reinterpret_cast<quintptr>(this), 0, 16)
                .arg(reinterpret_cast<quintptr>(QThread::currentThreadId()), 0, 16);
        // A thread that ended leaves its connection behind, and its id may come back.
        if (QSqlDatabase::contains(name))
            QSqlDatabase::removeDatabase(name);
        auto db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path_);
        connections_.setLocalData(new ThreadConnection{name, db, {}});
    }
    ThreadConnection &own = *connections_.localData();
    if (own.db.isOpen())
        return own;
    if (!own.db.open())
        fatal(QStringLiteral("open failed for %1").arg(path_), own.db.lastError());
    for (const char *pragma : pragmas)
        QSqlQuery(own.db).exec(QString::fromLatin1(pragma));
    return own;
}

void TallyDb::fatal(const QString &message, const QSqlError &error)
{
    const QString text = QStringLiteral("TallyDb fatal: %1: %2").arg(message, error.text());
    qCCritical(store_log).noquote() << text;
    throw std::runtime_error(text.toStdString());
}

QSqlQuery TallyDb::exec_prepared(const QSqlDatabase &db, const QString &sql,
                                 const QVariantList &params)
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        fatal(prepare_failed.arg(sql.simplified()), query.lastError());
    for (const QVariant &param : params)
        query.addBindValue(bindable(param));
    if (!query.exec())
        fatal(exec_failed.arg(sql.simplified()), query.lastError());
    return query;
}

QSqlQuery &TallyDb::KeptStatement::exec(const QVariantList &params)
{
    for (int i = 0; i < params.size(); ++i)
        query_.bindValue(i, bindable(params.at(i)));
    if (!query_.exec())
        fatal(exec_failure_.isEmpty() ? exec_failed.arg(query_.lastQuery().simplified())
                                      : exec_failure_,
              query_.lastError());
    return query_;
}

TallyDb::KeptStatement TallyDb::kept(const QString &sql, const QString &prepare_failure,
                                     const QString &exec_failure) const
{
    ThreadConnection &own = thread_connection();
    if (const auto found = own.kept.find(sql); found != own.kept.end())
        return {found->second, exec_failure};
    QSqlQuery query(own.db);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        fatal(prepare_failure.isEmpty() ? prepare_failed.arg(sql.simplified()) : prepare_failure,
              query.lastError());
    return {own.kept.emplace(sql, std::move(query)).first->second, exec_failure};
}

TallyDb::Transaction::Transaction(QSqlDatabase db) : db_(std::move(db))
{
    QSqlQuery begin(db_);
    if (!begin.exec(QStringLiteral("BEGIN IMMEDIATE")))
        fatal(QStringLiteral("begin failed"), begin.lastError());
}

TallyDb::Transaction::~Transaction()
{
    if (open_)
        db_.rollback();
}

void TallyDb::Transaction::commit(const QString &failure)
{
    open_ = false;
    if (db_.commit())
        return;
    const QSqlError error = db_.lastError();
    db_.rollback();
    fatal(failure, error);
}

ChangeStamp TallyDb::change_stamp() const
{
    auto statement =
        kept(QStringLiteral("SELECT data_version, total_changes() FROM pragma_data_version"));
    QSqlQuery &row = statement.exec({});
    row.next();
    return {row.value(0).toLongLong(), row.value(1).toLongLong()};
}

qint64 TallyDb::schema_version() const
{
    auto statement = kept(QStringLiteral("SELECT schema_version FROM pragma_schema_version"));
    QSqlQuery &row = statement.exec({});
    row.next();
    return row.value(0).toLongLong();
}

bool TallyDb::any_row(const QString &sql, const QVariantList &params) const
{
    auto statement = kept(sql);
    return statement.exec(params).next();
}

int TallyDb::single_int(const QString &sql, const QVariantList &params) const
{
    QSqlQuery query = exec_prepared(connection(), sql, params);
    return query.next() ? query.value(0).toInt() : 0;
}

} // namespace tally::data
