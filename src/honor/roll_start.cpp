#include "roll_start.h"

#include "honor_roll.h"
#include "memory_window.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>
#include <utility>

namespace tally::honor {

namespace {

/// Records of one roll stand closer than this, even where some pages in between can't be read.
constexpr std::uint64_t widest_gap = 0x10000;

using Entries = std::vector<LeaderboardEntry>;
using EntryIt = Entries::const_iterator;

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
    return found != entries.end() && found->address - address <= widest_gap ? found
                                                                            : entries.end();
}

/// The highest honor of each name from `from` on, as far as the records hang together.
QHash<QString, std::int64_t> honors_behind(EntryIt from, EntryIt end)
{
    QHash<QString, std::int64_t> honors;
    for (EntryIt it = from; it != end && (it == from || !far_apart(*std::prev(it), *it)); ++it) {
        std::int64_t &honor = honors[it->name];
        honor = std::max(honor, it->honor.value_or(0));
    }
    return honors;
}

/// The first record of the roll that `own` belongs to. A roll holds each name once and honor only
/// grows, so that a name met again, or one that stands behind with more honor, is of an older copy.
EntryIt first_record(const Entries &entries, EntryIt own)
{
    const QHash<QString, std::int64_t> behind = honors_behind(own, entries.end());
    QSet<QString> met{own->name};
    EntryIt first = own;
    while (first != entries.begin()) {
        const EntryIt before = std::prev(first);
        if (far_apart(*before, *first) || met.contains(before->name) ||
            behind.value(before->name) > before->honor.value_or(0))
            break;
        met.insert(before->name);
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
    return memory.sliced(offset, std::min(static_cast<qsizetype>(shape.size),
                                          memory.size() - offset));
}

std::int64_t honor_sum(QByteArrayView roll)
{
    const Entries people = ranked_roll(parse_entries(roll, 0));
    return std::accumulate(people.begin(), people.end(), std::int64_t{0},
                           [](std::int64_t sum, const LeaderboardEntry &entry) {
                               return sum + entry.honor.value_or(0);
                           });
}

} // namespace

std::optional<RollStart> roll_start_around(const MarkerHit &hit, QByteArrayView memory,
                                           std::uint64_t memory_address)
{
    const Entries entries = parse_entries(memory, memory_address);
    std::vector<std::uint64_t> addresses;
    if (const EntryIt own = entry_at(entries, hit.name_address); own != entries.end()) {
        const std::uint64_t first_tag = first_record(entries, own)->address - name_behind_tag;
        const std::uint64_t roll_address =
            address_below(first_tag, kingdom_reach) + roll_window.before;
        // The player's record must stay in view even where the roll is longer than that.
        const std::uint64_t lowest =
            address_below(hit.name_address + longest_own_name, own_honor_window.before);
        addresses.push_back(std::max(roll_address, lowest));
    }
    addresses.push_back(hit.name_address);

    for (const std::uint64_t address : addresses) {
        if (count_records(view_of(score_window, address, memory, memory_address)) < least_score)
            continue;
        const bool players = hit.marker == player_marker && plausible_own_honor.holds(hit.honor);
        return RollStart{address, players ? hit.honor : 0,
                         honor_sum(view_of(roll_window, address, memory, memory_address))};
    }
    return std::nullopt;
}

std::vector<std::uint64_t> best_addresses(const std::vector<RollStart> &starts)
{
    using Worth = std::pair<std::int64_t, std::int64_t>;
    const auto worth = [](const RollStart &s) { return Worth{s.own_honor, s.honor_sum}; };
    Worth most{0, 0};
    for (const RollStart &start : starts)
        most = std::max(most, worth(start));
    std::set<std::uint64_t> addresses;
    for (const RollStart &start : starts) {
        if (worth(start) == most)
            addresses.insert(start.address);
    }
    return {addresses.begin(), addresses.end()};
}

} // namespace tally::honor
