#pragma once

#include "data/store/result_cache.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <optional>
#include <unordered_map>

namespace tally::data {

/// What one thread holds of one `TallyDb`. Used by that thread alone and freed when it ends.
struct ThreadConnection {
    QString name; ///< in Qt's registry of connections
    QSqlDatabase db;
    std::unordered_map<QString, QSqlQuery> kept = {}; ///< prepared statements by their text
    ResultCache results = {};
    std::optional<qint64> sliced_schema = {}; ///< the version whose triggers were looked after
};

/// While it lives, all queries of the connection see one state of the database.
class ReadSnapshot {
public:
    explicit ReadSnapshot(QSqlDatabase db) : db_(std::move(db)), open_(db_.transaction()) {}
    ~ReadSnapshot()
    {
        if (open_)
            db_.commit();
    }
    ReadSnapshot(const ReadSnapshot &) = delete;
    ReadSnapshot &operator=(const ReadSnapshot &) = delete;

    /// False inside a transaction that somebody else began, whose changes may still be undone.
    bool is_of_commits() const { return open_; }

private:
    QSqlDatabase db_;
    bool open_;
};

} // namespace tally::data
