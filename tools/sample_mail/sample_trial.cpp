#include "mail_parts.h"

namespace tally::sample {
namespace {

QByteArray participant(Random &random, const Player &player, double share, int order)
{
    return map({entry_of("playerId", player.id), text_entry("name", player.name),
                text_entry("abbr", player.alliance_tag), entry_of("damageRate", share),
                entry_of("order", order), entry_of("head", random.whole(1, 400)),
                entry("loots", loot(random, random.integer(1, 6))),
                entry("troops", troops(random, random.integer(1, 4)))});
}

/// Shares of the damage, 1.0 in all.
std::vector<double> shares(Random &random, std::size_t size)
{
    std::vector<double> result;
    double sum = 0.0;
    for (std::size_t i = 0; i < size; ++i) {
        result.push_back(random.skewed(1.0, 1.0));
        sum += result.back();
    }
    for (double &share : result)
        share /= sum;
    return result;
}

} // namespace

QByteArray trial_mail(Random &random, const BossKill &kill)
{
    const std::vector<double> damage = shares(random, kill.participants.size());
    QByteArrayList infos;
    for (std::size_t i = 0; i < kill.participants.size(); ++i)
        infos += participant(random, kill.participants[i], damage[i], static_cast<int>(i) + 1);

    const QByteArray content = map(
        {text_entry("eliteBarName", kill.boss_name), entry_of("npcType", kill.npc_type),
         entry_of("npcLevel", kill.npc_level),
         entry("pos",
               map({entry_of("x", random.whole(0, 7200)), entry_of("y", random.whole(0, 7200))})),
         entry("infos", array(infos)),
         entry("damageLog", fight_log(random, random.integer(20, 90)))});
    return finish_mail(random, head_entries(random, kill.head, "BarCanyonKillBoss") +
                                   entry("body", map({text_entry("title", "Boss defeated"),
                                                      entry("content", content)})));
}

BossKill keep_kill(const MailHead &head, std::vector<Player> participants)
{
    return {head, "Bloodfist Bargha", 102000155.0, 25.0, std::move(participants)};
}

BossKill canyon_kill(Random &random, const MailHead &head, std::vector<Player> participants)
{
    const bool is_baulur = random.chance(0.6);
    return {head, is_baulur ? "Ironhand Baulur" : "Miser Khaolak",
            is_baulur ? 102000101.0 : 102000102.0, random.whole(1, 5), std::move(participants)};
}

QByteArray sample_trial_mail(quint32 seed)
{
    Random random(seed);
    const MailHead head = random_head(random);
    std::vector<Player> participants = {head.owner};
    const int others = random.integer(0, 19);
    for (int i = 0; i < others; ++i)
        participants.push_back(random_player(random));
    return trial_mail(random, canyon_kill(random, head, std::move(participants)));
}

QByteArray sample_keep_mail(quint32 seed)
{
    Random random(seed);
    const MailHead head = random_head(random);
    return trial_mail(random, keep_kill(head, {head.owner, random_player(random)}));
}

} // namespace tally::sample
