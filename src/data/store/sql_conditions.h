#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

namespace tally::data {

/// Clauses of a WHERE that grow one by one, with their values.
struct SqlConditions {
    QStringList clauses;
    QVariantList params;

    void add(const QString &clause) { clauses << clause; }
    void add(const QString &clause, const QVariant &value)
    {
        clauses << clause;
        params << value;
    }
    void add(const QString &clause, std::optional<double> value)
    {
        if (value)
            add(clause, QVariant(*value));
    }
    /// `clause` with "?, ?, ..." in the place of %1; nothing for an empty list.
    void add_any_of(const QString &clause, const QStringList &values);

    QString sql() const
    {
        return clauses.isEmpty() ? QStringLiteral("1=1") : clauses.join(u" AND ");
    }
};

inline QString placeholders(qsizetype count)
{
    return QStringList(count, QStringLiteral("?")).join(u',');
}

inline void SqlConditions::add_any_of(const QString &clause, const QStringList &values)
{
    if (values.isEmpty())
        return;
    add(clause.arg(placeholders(values.size())));
    for (const QString &value : values)
        params << value;
}

} // namespace tally::data
