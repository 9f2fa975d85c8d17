#include "honor/roll_start.h"

#include "honor/honor_roll.h"
#include "honor/memory_window.h"

#include <QHash>

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace tally::honor {

namespace {

/// Records of one roll stand closer than this, even where some pages in between can't be read.
constexpr std::uint64_t widest_gap = 0x10000;

using Entries = std::vector<LeaderboardEntry>;
using EntryIt = Entries::const_iterator;
using Honors = std::unordered_map<QString, std::int64_t>;

bool far_apart(const LeaderboardEntry &lower, const LeaderboardEntry &upper)
{
    return upper.address - lower.address > widest_gap;
}

/// The entry at `address`, or the next one behind it: a name may be too long for a record's.
EntryIt entry_at(const Entries &entries, std::uint64_t address)
{
    const EntryIt found = std::lower_bound(
        entries.begin(), entries.end(), address,
        [](const LeaderboardEntry &entry, std::uint64_t a) { return entry.address < a; });
    return found != entries.end() && found->address - address <= widest_gap ? found : entries.end();
}

/// The highest honor of each name from `from` on, as far as the records hang together.
Honors honors_behind(EntryIt from, EntryIt end)
{
    Honors honors;
    for (EntryIt it = from; it != end && (it == from || !far_apart(*std::prev(it), *it)); ++it) {
        std::int64_t &honor = honors[it->name];
        honor = std::max(honor, it->honor.value_or(0));
    }
    return honors;
}

/// The first record of the roll that `own` belongs to: as far back as records hang together and no
/// name is met again, for a roll holds each name once. With `behind`, a record also ends it whose
/// name stands behind with more honor: honor only grows, so that it belongs to an older copy.
EntryIt first_record(const Entries &entries, EntryIt own, const Honors &behind)
{
    std::unordered_set<QString> met{own->name};
    EntryIt first = own;
    while (first != entries.begin()) {
        const EntryIt before = std::prev(first);
        const auto newer = behind.find(before->name);
        if (far_apart(*before, *first) || !met.insert(before->name).second ||
            (newer != behind.end() && newer->second > before->honor.value_or(0)))
            break;
        first = before;
    }
    return first;
}

/// The part of `memory` that a window of that shape around `address` shows.
QByteArrayView view_of(const WindowShape &shape, std::uint64_t address, QByteArrayView memory,
                       std::uint64_t memory_address)
{
    const std::uint64_t begin =
        std::max(address_below(address, shape.before), memory_address) - memory_address;
    const auto offset = std::min(static_cast<qsizetype>(begin), memory.size());
    return memory.sliced(offset,
                         std::min(static_cast<qsizetype>(shape.size), memory.size() - offset));
}

/// The honor of everybody in the roll window, as a read sums it up: the first entry of each name.
std::int64_t honor_sum(const Entries &entries, std::uint64_t address)
{
    const std::uint64_t begin = address_below(address, roll_window.before);
    std::unordered_set<QString> met;
    std::int64_t sum = 0;
    for (const LeaderboardEntry &entry : entries) {
        if (entry.address >= begin && entry.address - begin < roll_window.size &&
            met.insert(entry.name).second)
            sum += entry.honor.value_or(0);
    }
    return sum;
}

/// The address from which the roll is seen from that record on, and the hit still as well, however
/// long the roll is.
std::uint64_t address_for(const LeaderboardEntry &first, std::uint64_t hit)
{
    const std::uint64_t lowest = address_below(hit + longest_own_name, own_honor_window.before);
    const std::uint64_t begin = address_below(first.address - name_behind_tag, kingdom_reach);
    return std::max(begin + roll_window.before, lowest);
}

/// From the first record on, by the strict rule and by the lenient one, which a record that lost
/// its honor can't cut short; and from the hit itself.
std::set<std::uint64_t> possible_starts(const Entries &entries, std::uint64_t hit)
{
    std::set<std::uint64_t> starts{hit};
    if (const EntryIt own = entry_at(entries, hit); own != entries.end()) {
        for (const Honors &behind : {honors_behind(own, entries.end()), Honors{}})
            starts.insert(address_for(*first_record(entries, own, behind), hit));
    }
    return starts;
}

} // namespace

std::int64_t own_honor_at(const MarkerHit &hit)
{
    return hit.marker == player_marker && plausible_own_honor.holds(hit.honor) ? hit.honor : 0;
}

std::optional<RollStart> roll_start_around(const MarkerHit &hit, QByteArrayView memory,
                                           std::uint64_t memory_address)
{
    const Entries entries = parse_entries(memory, memory_address);
    std::optional<RollStart> best;
    for (const std::uint64_t address : possible_starts(entries, hit.name_address)) {
        const std::int64_t sum = honor_sum(entries, address);
        // Among equals the higher start, which lets less of a stranger's memory in.
        if ((!best || sum >= best->honor_sum) &&
            count_records(view_of(score_window, address, memory, memory_address)) >= least_score)
            best = RollStart{address, own_honor_at(hit), sum};
    }
    return best;
}

std::vector<std::uint64_t> best_addresses(const std::vector<RollStart> &starts)
{
    using Worth = std::pair<std::int64_t, std::int64_t>;
    const auto worth = [](const RollStart &s) {
        return Worth{s.own_honor, s.honor_sum};
    };
    Worth most{0, 0};
    for (const RollStart &start : starts)
        most = std::max(most, worth(start));
    std::set<std::uint64_t> addresses;
    for (const RollStart &start : starts) {
        if (worth(start) == most)
            addresses.insert(start.address);
    }
    const auto kept = std::min(addresses.size(), most_starts);
    return {addresses.begin(), std::next(addresses.begin(), static_cast<std::ptrdiff_t>(kept))};
}

} // namespace tally::honor
