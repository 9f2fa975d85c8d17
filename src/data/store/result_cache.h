#pragma once

#include "data/store/change_stamp.h"

#include <QCache>
#include <QString>

#include <any>

namespace tally::data {

/// The results of queries on one connection that were used last, all of one state of the reports:
/// a result for a new state throws the old ones away. Used by one thread.
class ResultCache {
public:
    /// Nothing if the query was not asked since the last change, or too long ago.
    const std::any *find(const ChangeStamp &now, const QString &key) const
    {
        return now == stamp_ ? results_.object(key) : nullptr;
    }

    void insert(const ChangeStamp &asked_at, const QString &key, std::any result)
    {
        if (asked_at != stamp_)
            results_.clear();
        stamp_ = asked_at;
        results_.insert(key, new std::any(std::move(result)));
    }

private:
    /// What all views ask for, with a few filters each: about ten questions a view.
    static constexpr qsizetype max_results = 512;

    ChangeStamp stamp_;
    QCache<QString, std::any> results_{max_results};
};

/// Which slices a running result tells of: those up to `last_id`, as long as none is removed.
struct SlicesSeen {
    qint64 schema = 0;
    qint64 removed = 0;
    qint64 last_id = 0;

    bool continues(const SlicesSeen &earlier) const
    {
        return schema == earlier.schema && removed == earlier.removed;
    }
};

/// A result that is brought up to date, not computed anew, when reports come in (running.h).
struct RunningResult {
    SlicesSeen seen;
    std::any result;
};

} // namespace tally::data
