#include "ui/chains/encounters.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

namespace tally::ui {
namespace {

/// Nothing for a round that takes no part.
std::optional<double> id_of(std::optional<double> npc_ctid)
{
    return npc_ctid && !std::isnan(*npc_ctid) ? std::optional(std::trunc(*npc_ctid)) : std::nullopt;
}

std::vector<size_t> by_start_time(const std::vector<data::ChainHead> &chains)
{
    std::vector<size_t> sorted(chains.size());
    std::iota(sorted.begin(), sorted.end(), size_t{0});
    std::ranges::stable_sort(
        sorted, {}, [&chains](size_t i) { return chains[i].chain_start_time.value_or(0.0); });
    return sorted;
}

} // namespace

Encounters::Encounters(const std::vector<data::ChainHead> &chains) : order_(chains.size())
{
    size_t fights = 0;
    for (const data::ChainHead &chain : chains)
        fights += chain.fights.size();
    met_.reserve(static_cast<qsizetype>(fights));
    size_t order = 0;
    for (const size_t chain : by_start_time(chains)) {
        for (const data::ChainFight &fight : chains[chain].fights) {
            const auto id = id_of(fight.npc_ctid);
            if (!id)
                continue;
            Met &met = met_[*id];
            met.last = order;
            if (!fight.won && met.first_lootless == Met::never)
                met.first_lootless = order;
        }
        order_[chain] = order++;
    }
}

std::vector<Meeting> Encounters::meetings(size_t chain,
                                          const std::vector<data::ChainRound> &rounds) const
{
    QHash<double, size_t> last_here;
    for (size_t i = 0; i < rounds.size(); ++i) {
        if (const auto id = id_of(rounds[i].npc_ctid))
            last_here[*id] = i;
    }
    std::set<double> got_away_here;
    std::vector<Meeting> result(rounds.size());
    for (size_t i = 0; i < rounds.size(); ++i) {
        const auto id = id_of(rounds[i].npc_ctid);
        const auto met = id ? met_.constFind(*id) : met_.constEnd();
        if (met == met_.constEnd())
            continue;
        if (has_loot(rounds[i])) {
            result[i].is_free = met->first_lootless < order_[chain] || got_away_here.contains(*id);
        } else {
            result[i].is_tactical = met->last > order_[chain] || last_here[*id] > i;
            got_away_here.insert(*id);
        }
    }
    return result;
}

data::ChainHead head_of(const data::ChainRun &chain)
{
    data::ChainHead head{.file_name = chain.file_name,
                         .chain_start_time = chain.chain_start_time,
                         .chain_end_time = chain.chain_end_time,
                         .rounds = static_cast<int>(chain.rounds.size()),
                         .fights = {}};
    for (const data::ChainRound &round : chain.rounds) {
        const bool won = has_loot(round);
        head.wins += won ? 1 : 0;
        head.has_fort_round |= round.is_fort_round;
        if (round.npc_ctid)
            head.fights.push_back({*round.npc_ctid, won});
    }
    return head;
}

bool has_loot(const data::ChainRound &round)
{
    double sum = 0.0;
    for (const data::LootEntry &item : round.loot)
        sum += item.value.value_or(0.0);
    return sum > 0.0;
}

int final_fort_round(const std::vector<data::ChainRound> &rounds)
{
    int final_round = -1;
    double best = -1.0;
    for (const data::ChainRound &round : rounds) {
        const double damage = round.damage_dealt.value_or(0.0);
        if (round.is_fort_round && damage > best) {
            best = damage;
            final_round = round.round_no;
        }
    }
    return final_round;
}

} // namespace tally::ui
