#pragma once

#include "data/store/change_stamp.h"

#include <QString>

#include <any>
#include <unordered_map>

namespace tally::data {

/// The last results of queries on one connection, all of one state of the reports: a result for a
/// new state throws the old ones away. Used by one thread.
class ResultCache {
public:
    /// Nothing if the query was not asked since the last change.
    const std::any *find(const ChangeStamp &now, const QString &key) const
    {
        const auto found = now == stamp_ ? results_.find(key) : results_.end();
        return found == results_.end() ? nullptr : &found->second;
    }

    void insert(const ChangeStamp &asked_at, const QString &key, std::any result)
    {
        if (asked_at != stamp_ || results_.size() >= max_results)
            results_.clear();
        stamp_ = asked_at;
        results_.insert_or_assign(key, std::move(result));
    }

private:
    static constexpr std::size_t max_results = 64;

    ChangeStamp stamp_;
    std::unordered_map<QString, std::any> results_;
};

} // namespace tally::data
