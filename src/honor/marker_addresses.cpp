#include "honor/marker_addresses.h"

#include "honor/marker_sites.h"
#include "honor/memory_walk.h"
#include "honor/memory_window.h"
#include "honor/roll_start.h"

#include <algorithm>
#include <optional>

namespace tally::honor {

namespace {

std::optional<RollStart> start_at(platform::ProcessMemory &process, const MarkerHit &hit,
                                  const std::stop_token &stop)
{
    char still_there = 0;
    if (process.read(hit.name_address, &still_there, 1) == 0)
        return std::nullopt;
    // Nothing that a read can use lies farther from the hit.
    constexpr std::uint64_t reach = SiteCollector::roll_reach + roll_window.before;
    const std::uint64_t begin = address_below(hit.name_address, reach);
    const std::uint64_t size = hit.name_address + reach - begin;
    return roll_start_around(hit, read_window(process, begin, size, stop), begin);
}

} // namespace

std::vector<std::uint64_t> find_marker_addresses(platform::ProcessMemory &process,
                                                 std::uint64_t low, std::uint64_t high,
                                                 const Markers &markers,
                                                 const std::stop_token &stop)
{
    const MarkerScan scan{markers};
    SiteCollector collector;
    const auto on_hit = [&](const MarkerHit &hit) {
        collector.add(hit);
    };
    MemoryWalk walk{process, static_cast<std::size_t>(scan.longest_record()), stop};
    walk.run(low, high, [&](QByteArrayView bytes, std::uint64_t address) {
        scan.find(bytes, address, on_hit);
    });
    std::vector<RollStart> starts;
    std::int64_t most_own_honor = 0;
    for (const MarkerSite &site : collector.finish()) {
        if (stop.stop_requested())
            return {};
        // Sites come from the highest honor down: no later one could still be the best.
        if (own_honor_at(site.hit) < most_own_honor)
            break;
        if (const auto start = start_at(process, site.hit, stop)) {
            starts.push_back(*start);
            most_own_honor = std::max(most_own_honor, start->own_honor);
        }
    }
    return best_addresses(starts);
}

} // namespace tally::honor
