#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <vector>

namespace tally::test {

/// A database file seen without the store: another program that has it open at the same time.
class PlainConnection {
public:
    explicit PlainConnection(const QString &path);
    ~PlainConnection();
    PlainConnection(const PlainConnection &) = delete;
    PlainConnection &operator=(const PlainConnection &) = delete;

    /// All rows as texts, NULL as "NULL". \throws std::runtime_error
    std::vector<QStringList> rows(const QString &sql) const;
    /// The rows one a line, their fields separated by "|".
    QString text(const QString &sql) const;
    const QSqlDatabase &db() const { return db_; }

private:
    QString name_;
    QSqlDatabase db_;
};

/// The same on a connection that is open already.
std::vector<QStringList> rows_of(const QSqlDatabase &db, const QString &sql);
QString text_of(const QSqlDatabase &db, const QString &sql);

} // namespace tally::test
