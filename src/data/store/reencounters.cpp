#include "data/store/reencounters.h"

#include <algorithm>

namespace tally::data {

namespace {

/// Adds the encounters [first, last) of one barbarian.
void classify(std::vector<Encounter>::const_iterator first,
              std::vector<Encounter>::const_iterator last, const std::vector<MetIn> &slices,
              Reencounters &result)
{
    std::optional<double> first_lootless;
    std::optional<double> last_time;
    for (auto met = first; met != last; ++met) {
        const std::optional<double> time = slices[met->slice].time;
        if (!time)
            continue;
        if (met->outcome == RoundOutcome::lootless && (!first_lootless || *time < *first_lootless))
            first_lootless = time;
        if (!last_time || *time > *last_time)
            last_time = time;
    }
    for (auto met = first; met != last; ++met) {
        const auto &[file_name, time] = slices[met->slice];
        if (!time)
            continue;
        if (met->outcome == RoundOutcome::won && first_lootless && *first_lootless < *time) {
            ++result.free_ap;
            result.files_with_free_ap.insert(file_name);
        } else if (met->outcome == RoundOutcome::lootless && *last_time > *time) {
            ++result.tactical;
        }
    }
}

} // namespace

// Only rounds against one barbarian tell of each other, so they are brought together once instead
// of being searched for every round.
Reencounters reencounters(std::vector<Encounter> encounters, const std::vector<MetIn> &slices)
{
    std::sort(encounters.begin(), encounters.end(),
              [](const Encounter &a, const Encounter &b) { return a.npc_ctid < b.npc_ctid; });
    Reencounters result;
    for (auto first = encounters.cbegin(); first != encounters.cend();) {
        const auto last = std::find_if(first, encounters.cend(), [&](const Encounter &other) {
            return other.npc_ctid != first->npc_ctid;
        });
        classify(first, last, slices, result);
        first = last;
    }
    return result;
}

} // namespace tally::data
