#pragma once

#include "data/store/remembered.h"

#include <any>
#include <optional>

namespace tally::data {

/// To be asked under a `SliceSnapshot`. \return nothing while this connection has slices of its own
std::optional<SlicesSeen> slices_seen(const StoreConnection &store);

/// A result over slices to which those that have come since are added, for new reports hardly ever
/// change old chains. Once slices were removed it is made anew. All slices of a chain come at once.
/// \param add `void(Result &, qint64 after)`: adds the slices whose id is larger than `after`
template <typename Result, typename Add>
Result running_over_slices(const StoreConnection &store, const QString &question,
                           const QVariantList &params, const Add &add)
{
    const auto compute = [&] {
        const std::optional<SlicesSeen> now = slices_seen(store);
        const QString key = result_key(question, params);
        const RunningResult *earlier = store.running().object(key);
        RunningResult running;
        if (now && earlier && now->continues(earlier->seen))
            running = *earlier;
        Result result =
            running.result.has_value() ? std::any_cast<Result>(running.result) : Result();
        add(result, running.seen.last_id);
        if (now)
            store.running().insert(key, new RunningResult{*now, result});
        return result;
    };
    return remembered_of_slices<Result>(store, question, params, compute);
}

} // namespace tally::data
