#include "ui/chains/round_keys.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace tally::ui {
namespace {

struct Appearance {
    RoundKey key;
    bool has_loot = false;
};

std::vector<const data::ChainRun *> by_start_time(const std::vector<data::ChainRun> &chains)
{
    std::vector<const data::ChainRun *> sorted;
    sorted.reserve(chains.size());
    for (const data::ChainRun &chain : chains)
        sorted.push_back(&chain);
    std::ranges::stable_sort(sorted, {}, [](const data::ChainRun *chain) {
        return chain->chain_start_time.value_or(0.0);
    });
    return sorted;
}

/// What each barbarian was met in, by its id without a fraction.
std::map<double, std::vector<Appearance>> appearances(const std::vector<data::ChainRun> &chains)
{
    std::map<double, std::vector<Appearance>> met;
    for (const data::ChainRun *chain : by_start_time(chains)) {
        for (const data::ChainRound &round : chain->rounds) {
            if (round.npc_ctid && !std::isnan(*round.npc_ctid))
                met[std::trunc(*round.npc_ctid)].push_back(
                    {{chain->file_name, round.round_no}, has_loot(round)});
        }
    }
    return met;
}

} // namespace

RoundKeys round_keys(const std::vector<data::ChainRun> &chains)
{
    RoundKeys keys;
    for (const auto &[id, rounds] : appearances(chains)) {
        bool got_away = false;
        for (const Appearance &round : rounds) {
            if (round.has_loot && got_away)
                keys.free.insert(round.key);
            if (!round.has_loot && &round != &rounds.back())
                keys.tactical.insert(round.key);
            got_away = got_away || !round.has_loot;
        }
    }
    return keys;
}

bool has_loot(const data::ChainRound &round)
{
    double sum = 0.0;
    for (const data::LootEntry &item : round.loot)
        sum += item.value.value_or(0.0);
    return sum > 0.0;
}

int final_fort_round(const data::ChainRun &chain)
{
    int final_round = -1;
    double best = -1.0;
    for (const data::ChainRound &round : chain.rounds) {
        const double damage = round.damage_dealt.value_or(0.0);
        if (round.is_fort_round && damage > best) {
            best = damage;
            final_round = round.round_no;
        }
    }
    return final_round;
}

} // namespace tally::ui
