#include "marker_sites.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace tally::honor {

namespace {

/// A plausible honor tells a record from a chat line best, then the company of other markers.
bool better(const MarkerSite &a, const MarkerSite &b)
{
    const auto evidence = [](const MarkerSite &s) {
        return std::tuple{s.hit.honor > 0, s.others_near, s.hit.honor};
    };
    return evidence(a) > evidence(b);
}

void keep_best(std::vector<MarkerSite> &sites)
{
    std::stable_sort(sites.begin(), sites.end(), better);
    if (sites.size() > SiteCollector::most_sites)
        sites.resize(SiteCollector::most_sites);
}

} // namespace

void SiteCollector::add(const MarkerHit &hit)
{
    const std::uint64_t index = hit.name_address / cell_size;
    if (index < settled_upto_)
        return;
    MarkerHit &best = recent_[index][hit.marker];
    if (best.name_address == 0 || hit.honor > best.honor)
        best = hit;
    if (index > settled_upto_ + reach_in_cells)
        settle_before(index - reach_in_cells);
}

/// Settles the cells whose whole neighbourhood is known.
void SiteCollector::settle_before(std::uint64_t cell)
{
    for (auto it = recent_.lower_bound(settled_upto_); it != recent_.end() && it->first < cell; ++it)
        settle(it->first, it->second);
    settled_upto_ = cell;
    const std::uint64_t still_near = cell > reach_in_cells ? cell - reach_in_cells : 0;
    recent_.erase(recent_.begin(), recent_.lower_bound(still_near));
}

void SiteCollector::settle(std::uint64_t index, const Cell &cell)
{
    std::array<bool, 3> near{};
    const std::uint64_t first = index > reach_in_cells ? index - reach_in_cells : 0;
    for (auto it = recent_.lower_bound(first);
         it != recent_.end() && it->first <= index + reach_in_cells; ++it) {
        for (std::size_t marker = 0; marker < near.size(); ++marker)
            near[marker] = near[marker] || it->second[marker].honor > 0;
    }
    for (const MarkerHit &hit : cell) {
        if (hit.name_address == 0)
            continue;
        int others = 0;
        for (std::size_t marker = 0; marker < near.size(); ++marker)
            others += marker != hit.marker && near[marker] ? 1 : 0;
        auto &sites = hit.marker == player_marker ? player_sites_ : enemy_sites_;
        sites.push_back({hit, others});
        if (sites.size() >= 4 * most_sites)
            keep_best(sites);
    }
}

std::vector<MarkerSite> SiteCollector::finish()
{
    settle_before(std::numeric_limits<std::uint64_t>::max());
    keep_best(player_sites_);
    keep_best(enemy_sites_);
    std::vector<MarkerSite> sites = std::move(player_sites_);
    sites.insert(sites.end(), enemy_sites_.begin(), enemy_sites_.end());
    return sites;
}

} // namespace tally::honor
