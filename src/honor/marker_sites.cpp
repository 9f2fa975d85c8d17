#include "honor/marker_sites.h"

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

void keep_best(std::vector<MarkerSite> &sites, std::size_t most)
{
    std::stable_sort(sites.begin(), sites.end(), better);
    if (sites.size() > most)
        sites.resize(most);
}

} // namespace

void SiteCollector::add(const MarkerHit &hit)
{
    const std::uint64_t index = hit.name_address / cell_size;
    if (index < settled_upto_)
        return;
    if (newest_ == nullptr || index != newest_index_) {
        newest_ = &recent_[index];
        newest_index_ = index;
    }
    MarkerHit &best = (*newest_)[hit.marker];
    if (best.name_address == 0 || hit.honor > best.honor)
        best = hit;
    if (index > settled_upto_ + reach_in_cells)
        settle_before(index - reach_in_cells);
}

/// Settles the cells whose whole neighbourhood is known.
void SiteCollector::settle_before(std::uint64_t cell)
{
    for (auto it = recent_.lower_bound(settled_upto_); it != recent_.end() && it->first < cell;
         ++it)
        settle(it->first, it->second);
    settled_upto_ = cell;
    const std::uint64_t still_near = cell > reach_in_cells ? cell - reach_in_cells : 0;
    recent_.erase(recent_.begin(), recent_.lower_bound(still_near));
    newest_ = nullptr;
}

void SiteCollector::settle(std::uint64_t index, const Cell &cell)
{
    for (const MarkerHit &hit : cell) {
        if (hit.name_address == 0)
            continue;
        const bool players = hit.marker == player_marker;
        auto &sites = players ? player_sites_ : enemy_sites_;
        const std::size_t most = players ? most_player_sites : most_enemy_sites;
        // Without a plausible honor the company counts for nothing: chat lines have it as well.
        sites.push_back({hit, hit.honor > 0 ? others_near(index, hit.marker) : 0});
        if (sites.size() >= 4 * most)
            keep_best(sites, most);
    }
}

int SiteCollector::others_near(std::uint64_t index, std::size_t marker) const
{
    std::array<bool, 3> near{};
    const std::uint64_t first = index > reach_in_cells ? index - reach_in_cells : 0;
    for (auto it = recent_.lower_bound(first);
         it != recent_.end() && it->first <= index + reach_in_cells; ++it) {
        for (std::size_t other = 0; other < near.size(); ++other)
            near[other] = near[other] || (other != marker && it->second[other].honor > 0);
    }
    return static_cast<int>(std::count(near.begin(), near.end(), true));
}

std::vector<MarkerSite> SiteCollector::finish()
{
    settle_before(std::numeric_limits<std::uint64_t>::max());
    keep_best(player_sites_, most_player_sites);
    keep_best(enemy_sites_, most_enemy_sites);
    for (std::vector<MarkerSite> *sites : {&player_sites_, &enemy_sites_})
        std::stable_sort(sites->begin(), sites->end(),
                         [](const auto &a, const auto &b) { return a.hit.honor > b.hit.honor; });
    std::vector<MarkerSite> sites = std::move(player_sites_);
    sites.insert(sites.end(), enemy_sites_.begin(), enemy_sites_.end());
    return sites;
}

} // namespace tally::honor
