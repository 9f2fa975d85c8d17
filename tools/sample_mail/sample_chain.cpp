#include "mail_parts.h"

#include <algorithm>

namespace tally::sample {
namespace {

/// Names the fallback level of rounds that carry none.
constexpr double mail_level = 45.0;

QByteArray losses(Random &random, const ChainRound &round)
{
    // Behind these the round's "NpcType" follows: the first "Death" from the round before on is the
    // damage dealt, the second "Hurt" (or the only one) the damage taken.
    QByteArray kill =
        join({entry_of("KillScore", random.whole(0, 9000)), entry_of("Death", round.damage_dealt),
              entry_of("BadHurt", random.whole(0, 900))});
    if (random.chance(0.8))
        kill += entry_of("Hurt", random.whole(0, 60000));
    return entry("Kill", map(kill)) +
           entry("Damage", map({entry_of("KillScore", random.whole(0, 900)),
                                entry_of("Hurt", round.damage_taken), entry_of("Death", 0.0),
                                entry_of("Power", random.whole(0, 40000)),
                                entry_of("BadHurt", random.whole(0, 30))}));
}

QByteArray enemy(Random &random, const Chain &chain, const ChainRound &round, bool is_first)
{
    QByteArray fields = entry_of("NpcType", round.enemy.npc_type);
    if (is_first || random.chance(0.9)) // the others take the type of a round that has one
        fields += entry_of("NpcBType", chain.npc_btype);
    if (round.enemy.castle_level)
        fields += entry_of("CastleLevel", *round.enemy.castle_level);
    fields += join({entry_of("CtId", round.enemy.ct_id), entry_of("HLv", random.whole(1, 60)),
                    entry("Pos", map({entry_of("X", random.whole(0, 7200)),
                                      entry_of("Y", random.whole(0, 7200))}))});
    if (round.is_fort)
        fields += entry("IsFort", small_value(1));
    return map(fields + entry("Troops", troops(random, random.integer(1, 4))));
}

QByteArray attack(Random &random, const Chain &chain, std::size_t index, double tick, int log_size)
{
    const ChainRound &round = chain.rounds[index];
    QByteArray fields = join({losses(random, round), entry("Log", fight_log(random, log_size)),
                              entry("CIdt", enemy(random, chain, round, index == 0)),
                              entry_of("DisappearTick", tick + random.whole(600, 90000))});
    if (random.chance(0.3)) // in seconds since the epoch: too large to be the tick
        fields += entry_of("Ets", chain.start + tick);
    fields += entry_of("Ets", tick);
    // The first round always has the key, were it for an empty map: it tells a chain mail from a
    // field fight, and has to stand within the first 32768 bytes.
    if (round.is_won)
        fields += entry("NpcKillLoot", loot(random, random.integer(1, 5)));
    else if (index == 0 || random.chance(0.5))
        fields += entry("NpcKillLoot", map());
    return map(fields + entry_of("Time", chain.start + static_cast<double>(index)) +
               entry("Buffs", buffs(random, log_size / 4)));
}

QByteArray self(Random &random, const Chain &chain)
{
    QByteArray fields = player_entries(chain.head.owner) +
                        army_entries(random, chain.hero_1, chain.hero_2) + entry_of("CT", 1.0);
    if (chain.is_square_rally)
        fields += text_entry("IsRally", "MassTypeSquareRally");
    else
        fields += entry("IsRally", small_value(0));
    return map(fields);
}

} // namespace

QByteArray chain_mail(Random &random, const Chain &chain)
{
    constexpr double log_budget = 1800.0; // keeps 30 rounds below 200 KB
    const auto length = static_cast<double>(chain.rounds.size());
    const int log_size =
        static_cast<int>(std::min(random.skewed(9.0, 1.2), log_budget / length / 1.3));
    const double first_tick = random.whole(1000, 9000000);
    const double pace = (chain.head.time - chain.start) / length;

    QByteArrayList attacks;
    for (std::size_t i = 0; i < chain.rounds.size(); ++i) {
        const double tick =
            first_tick + static_cast<double>(qRound64(pace * static_cast<double>(i)));
        attacks += attack(random, chain, i, tick, log_size);
    }
    const QByteArray content =
        map({text_entry("Role", "atk"), entry_of("Bts", chain.start), entry_of("Btk", first_tick),
             entry_of("Ets", chain.head.time), entry("SelfChar", self(random, chain)),
             entry("Attacks", array(attacks))});
    return finish_mail(random, head_entries(random, chain.head, "Battle") +
                                   entry_of("level", mail_level) +
                                   entry_of("result", chain.rounds.back().is_won ? 1.0 : 2.0) +
                                   entry("body", map({entry("content", content)})));
}

Barbarian random_barbarian(Random &random)
{
    const double ct_id = random.whole(100000, 2000000000);
    if (random.chance(0.1)) // a kind whose number doesn't tell its level
        return {ct_id, random.whole(101000, 101060), random.whole(20, 40)};
    const int highest = random.chance(0.1) ? 41 : 14;
    Barbarian result{ct_id, 150009.0 + random.integer(0, highest), {}};
    if (random.chance(0.3))
        result.castle_level = result.npc_type - 149968.0;
    return result;
}

std::vector<ChainRound> random_rounds(Random &random, int length)
{
    std::vector<ChainRound> rounds;
    for (int i = 0; i < length; ++i) {
        // From 1,500,000 on the store takes a round for a fort round, whatever its mail says.
        const double dealt = random.whole(20000, 700000);
        rounds.push_back({random_barbarian(random), dealt, random.whole(500, 90000),
                          random.chance(0.85), false});
    }
    return rounds;
}

QByteArray sample_chain_mail(quint32 seed)
{
    Random random(seed);
    Chain chain;
    chain.head = random_head(random);
    chain.rounds = random_rounds(random, random.integer(4, 12));
    chain.start = chain.head.time - 60.0 * static_cast<double>(chain.rounds.size());
    chain.hero_1 = random_hero(random);
    chain.hero_2 = random_hero(random);
    chain.is_square_rally = random.chance(0.3);
    if (chain.is_square_rally) {
        chain.rounds.front().is_fort = true;
        chain.rounds.front().damage_dealt = random.whole(1500000, 6000000);
    }
    return chain_mail(random, chain);
}

} // namespace tally::sample
