#pragma once

#include "data/store/slice_upkeep.h"
#include "data/store/store_connection.h"

#include <any>

namespace tally::data {

/// A question and all the values that its result depends on, as one text.
QString result_key(const QString &question, const QVariantList &params);

/// The result of `compute` on one state of the store, seen through a `Snapshot`, or that of the
/// last time if no report has changed since. `question` and `params` tell all that the result
/// depends on.
template <typename Result, typename Snapshot = ReadSnapshot, typename Compute>
Result remembered(const StoreConnection &store, const QString &question, const QVariantList &params,
                  const Compute &compute)
{
    const QString key = result_key(question, params);
    if (const std::any *known = store.results().find(change_stamp(store), key))
        return std::any_cast<const Result &>(*known);
    const Snapshot snapshot(store);
    const ChangeStamp now = change_stamp(store);
    Result result = compute();
    // A transaction of somebody else may still be undone.
    if (snapshot.is_of_commits())
        store.results().insert(now, key, result);
    return result;
}

/// The same for what reads the slices of chains.
template <typename Result, typename Compute>
Result remembered_of_slices(const StoreConnection &store, const QString &question,
                            const QVariantList &params, const Compute &compute)
{
    return remembered<Result, SliceSnapshot>(store, question, params, compute);
}

} // namespace tally::data
