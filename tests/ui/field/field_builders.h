#pragma once

#include "data/store/tally_db.h"

#include <QVariantMap>

#include <initializer_list>
#include <utility>
#include <vector>

namespace tally::test {

using Columns = std::initializer_list<std::pair<const char *, QVariant>>;

/// A row of attacks with these values besides what tells it apart.
inline QVariantMap attack_row(double id, Columns values)
{
    QVariantMap row{{QStringLiteral("attack_id"), id}, {QStringLiteral("attack_seq"), int(id)}};
    for (const auto &[column, value] : values)
        row.insert(QLatin1StringView(column), value);
    return row;
}

} // namespace tally::test
