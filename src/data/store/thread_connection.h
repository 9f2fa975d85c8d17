#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <unordered_map>

namespace tally::data {

/// What one thread holds of one `TallyDb`. Used by that thread alone and freed when it ends.
struct ThreadConnection {
    QString name; ///< in Qt's registry of connections
    QSqlDatabase db;
    std::unordered_map<QString, QSqlQuery> kept; ///< prepared statements by their text
};

} // namespace tally::data
