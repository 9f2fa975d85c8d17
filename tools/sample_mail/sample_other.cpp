#include "mail_parts.h"

#include <algorithm>
#include <array>

namespace tally::sample {
namespace {

/// The bytes that a mail should have in all; each kind fills them with what it carries most of.
int wanted_size(Random &random)
{
    return static_cast<int>(std::clamp(random.skewed(5500.0, 1.2), 2300.0, 180000.0));
}

constexpr int roster_entry_size = 110;
constexpr int tick_size = 66;

QByteArray alliance(Random &random, const MailHead &head)
{
    const int size = wanted_size(random);
    const int text_size = std::min(size / 2, 4000);
    const QByteArray body =
        map({text_entry("title", "To all members"), text_entry("content", prose(random, text_size)),
             entry("readBy", roster(random, (size - text_size) / roster_entry_size))});
    return head_entries(random, head, "Alliance") + entry("body", body);
}

QByteArray message(Random &random, const MailHead &head)
{
    // The words make it a candidate for a fort mail, its type doesn't.
    const QByteArray body = map({text_entry("title", "Barbarian Fort at 8?"),
                                 text_entry("content", prose(random, 2200)),
                                 entry("sentTo", roster(random, random.integer(1, 10)))});
    return head_entries(random, head, "Player") + entry("body", body);
}

QByteArray system(Random &random, const MailHead &head)
{
    static constexpr std::array<QByteArrayView, 4> titles = {
        "Daily Rewards", "Event Rewards", "Barbarians Everywhere",
        "Welcome to the Barbarian Fort season"};
    const QByteArray body =
        map({text_entry("title", random.pick(titles)), text_entry("content", prose(random, 900)),
             entry("ranking", roster(random, wanted_size(random) / roster_entry_size))});
    return join(
        {head_entries(random, head, "System"), entry("body", body),
         entry("attachments", array({map({entry("loot", loot(random, random.integer(1, 12)))})}))});
}

QByteArray scout(Random &random, const MailHead &head)
{
    const int size = wanted_size(random);
    const QByteArray content =
        map({player_entries(random_player(random)), army_entries(random, 3.0, 17.0),
             entry("reinforcements", roster(random, size / 4 / roster_entry_size)),
             entry("walls", fight_log(random, size / 2 / tick_size))});
    return head_entries(random, head, "Scout") + entry("body", map({entry("content", content)}));
}

QByteArray battle_without_attacks(Random &random, const MailHead &head)
{
    QByteArray content =
        entry_of("Bts", head.time - 10.0) + entry_of("Ets", head.time) +
        entry("SelfChar", map(player_entries(head.owner) + army_entries(random, 5.0, 6.0)));
    if (random.chance(0.5))
        content += entry("Attacks", map());
    return head_entries(random, head, "Battle") +
           entry("body", map({entry("content", map(content))}));
}

QByteArray fort_without_loot(Random &random, const MailHead &head)
{
    const QByteArray body = map({text_entry("title", "Barbarian Fort Rally Cancelled"),
                                 text_entry("targetName", "Level 4 Barbarian Fort"),
                                 text_entry("content", prose(random, 2200))});
    return head_entries(random, head, "System") + entry("body", body);
}

QByteArray boss_without_participants(Random &random, const MailHead &head)
{
    const QByteArray content =
        map({text_entry("eliteBarName", "Ironhand Baulur"), entry("infos", map()),
             entry("damageLog", fight_log(random, 60))});
    return head_entries(random, head, "BarCanyonKillBoss") +
           entry("body", map({entry("content", content)}));
}

QByteArray of_a_newer_game(Random &random, const MailHead &head)
{
    // Nothing knows this tag, so that the mail ends there for every reader.
    const QByteArray unknown(1, '\x02');
    const QByteArray attacks = array({map({entry("Damage", map()), entry("Mood", unknown)})});
    const QByteArray content =
        map({entry("SelfChar", map(army_entries(random, 1.0, 2.0))), entry("Attacks", attacks)});
    return head_entries(random, head, "Battle") + entry("body", map({entry("content", content)}));
}

using Writer = QByteArray (*)(Random &, const MailHead &);

struct Share {
    double upper_edge;
    Writer write;
};

constexpr std::array shares = {
    Share{0.36, alliance},
    Share{0.44, message},
    Share{0.70, system},
    Share{0.92, scout},
    Share{0.95, battle_without_attacks},
    Share{0.97, fort_without_loot},
    Share{0.99, boss_without_participants},
    Share{1.0, of_a_newer_game},
};

} // namespace

QByteArray other_mail(Random &random, const MailHead &head)
{
    const double lot = random.real(0.0, 1.0);
    const auto *share = std::find_if(shares.begin(), shares.end() - 1,
                                     [lot](const Share &one) { return lot < one.upper_edge; });
    return finish_mail(random, share->write(random, head));
}

QByteArray sample_other_mail(quint32 seed)
{
    Random random(seed);
    const MailHead head = random_head(random);
    return other_mail(random, head);
}

} // namespace tally::sample
