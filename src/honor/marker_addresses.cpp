#include "marker_addresses.h"

#include "marker_sites.h"
#include "memory_walk.h"
#include "memory_window.h"
#include "roll_start.h"

#include <algorithm>
#include <iterator>

namespace tally::honor {

namespace {

std::vector<RollStart> starts_at(platform::ProcessMemory &process,
                                 const std::vector<MarkerSite> &sites, bool of_player,
                                 const std::stop_token &stop)
{
    std::vector<RollStart> starts;
    for (const MarkerSite &site : sites) {
        if (stop.stop_requested())
            return {};
        if ((site.hit.marker == player_marker) != of_player)
            continue;
        // Nothing that a read can use lies farther from the hit.
        const std::uint64_t begin =
            address_below(site.hit.name_address, SiteCollector::roll_reach + roll_window.before);
        const std::uint64_t end =
            site.hit.name_address + SiteCollector::roll_reach + roll_window.before;
        const QByteArray memory = read_window(process, begin, end - begin, stop);
        if (const auto start = roll_start_around(site.hit, memory, begin))
            starts.push_back(*start);
    }
    return without_misleading(starts);
}

} // namespace

std::vector<std::uint64_t> find_marker_addresses(platform::ProcessMemory &process,
                                                 std::uint64_t low, std::uint64_t high,
                                                 const Markers &markers,
                                                 const std::stop_token &stop)
{
    const MarkerScan scan{markers};
    SiteCollector collector;
    const auto on_hit = [&](const MarkerHit &hit) { collector.add(hit); };
    MemoryWalk walk{process, static_cast<std::size_t>(scan.longest_record()), stop};
    walk.run(low, high, [&](QByteArrayView bytes, std::uint64_t address) {
        scan.find(bytes, address, on_hit);
    });
    const std::vector<MarkerSite> sites = collector.finish();
    std::vector<RollStart> starts = starts_at(process, sites, true, stop);
    if (starts.empty())
        starts = starts_at(process, sites, false, stop);
    std::vector<std::uint64_t> addresses;
    std::transform(starts.begin(), starts.end(), std::back_inserter(addresses),
                   [](const RollStart &start) { return start.address; });
    return addresses;
}

} // namespace tally::honor
