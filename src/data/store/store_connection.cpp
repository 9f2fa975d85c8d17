#include "data/store/store_connection.h"

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

StoreConnection::StoreConnection(QString path) : file_(std::move(path)) {}

StoreConnection::~StoreConnection()
{
    if (!connections_.hasLocalData())
        return;
    const QString name = connections_.localData()->name;
    connections_.setLocalData(nullptr); // Qt wants no handle left when it removes the connection
    QSqlDatabase::removeDatabase(name);
}

StoreConnection::ThreadConnection &StoreConnection::thread_connection() const
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
        connections_.setLocalData(new ThreadConnection{name, db, {}});
    }
    ThreadConnection &own = *connections_.localData();
    if (own.db.isOpen())
        return own;
    if (const auto failure = file_.open(own.db))
        fatal(QStringLiteral("open failed for %1").arg(file_.path()), QSqlError({}, *failure));
    for (const char *pragma : pragmas)
        QSqlQuery(own.db).exec(QString::fromLatin1(pragma));
    return own;
}

void StoreConnection::fatal(const QString &message, const QSqlError &error)
{
    const QString text = QStringLiteral("TallyDb fatal: %1: %2").arg(message, error.text());
    qCCritical(store_log).noquote() << text;
    throw std::runtime_error(text.toStdString());
}

QSqlQuery StoreConnection::exec_prepared(const QSqlDatabase &db, const QString &sql,
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

QSqlQuery &StoreConnection::KeptStatement::exec(const QVariantList &params)
{
    for (int i = 0; i < params.size(); ++i)
        query_.bindValue(i, bindable(params.at(i)));
    if (!query_.exec())
        fatal(exec_failure_.isEmpty() ? exec_failed.arg(query_.lastQuery().simplified())
                                      : exec_failure_,
              query_.lastError());
    return query_;
}

StoreConnection::KeptStatement StoreConnection::kept(const QString &sql,
                                                     const QString &prepare_failure,
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

Transaction::Transaction(const QSqlDatabase &db) : db_(db)
{
    QSqlQuery begin(db_);
    if (!begin.exec(QStringLiteral("BEGIN IMMEDIATE")))
        StoreConnection::fatal(QStringLiteral("begin failed"), begin.lastError());
}

Transaction::~Transaction()
{
    if (open_)
        db_.rollback();
}

void Transaction::commit(const QString &failure)
{
    open_ = false;
    if (db_.commit())
        return;
    const QSqlError error = db_.lastError();
    db_.rollback();
    StoreConnection::fatal(failure, error);
}

bool StoreConnection::any_row(const QString &sql, const QVariantList &params) const
{
    auto statement = kept(sql);
    return statement.exec(params).next();
}

int StoreConnection::single_int(const QString &sql, const QVariantList &params) const
{
    QSqlQuery query = exec(sql, params);
    return query.next() ? query.value(0).toInt() : 0;
}

bool StoreConnection::table_exists(const QString &table) const
{
    return exec(QStringLiteral("SELECT name FROM sqlite_master WHERE "
                               "type='table' AND name=?"),
                {table})
        .next();
}

QSet<QString> StoreConnection::table_columns(const QString &table) const
{
    QSet<QString> columns;
    auto rows = exec(QStringLiteral("PRAGMA table_info(%1)").arg(table));
    while (rows.next())
        columns << rows.value(1).toString();
    return columns;
}

} // namespace tally::data
