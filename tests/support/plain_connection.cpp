#include "support/plain_connection.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <atomic>
#include <stdexcept>

namespace tally::test {

std::vector<QStringList> rows_of(const QSqlDatabase &db, const QString &sql)
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!query.exec(sql))
        throw std::runtime_error(query.lastError().text().toStdString());
    std::vector<QStringList> rows;
    while (query.next()) {
        QStringList row;
        for (int i = 0; i < query.record().count(); ++i)
            row << (query.isNull(i) ? QStringLiteral("NULL") : query.value(i).toString());
        rows.push_back(row);
    }
    return rows;
}

QString text_of(const QSqlDatabase &db, const QString &sql)
{
    QStringList lines;
    for (const QStringList &row : rows_of(db, sql))
        lines << row.join(u'|');
    return lines.join(u'\n');
}

PlainConnection::PlainConnection(const QString &path)
{
    static std::atomic<int> count = 0;
    name_ = QStringLiteral("plain_%1").arg(count++);
    db_ = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name_);
    db_.setDatabaseName(path);
    if (!db_.open())
        throw std::runtime_error(db_.lastError().text().toStdString());
}

PlainConnection::~PlainConnection()
{
    db_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(name_);
}

std::vector<QStringList> PlainConnection::rows(const QString &sql) const
{
    return rows_of(db_, sql);
}

QString PlainConnection::text(const QString &sql) const
{
    return text_of(db_, sql);
}

} // namespace tally::test
