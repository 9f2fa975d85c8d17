#include "mail_parts.h"

namespace tally::sample {
namespace {

QByteArray score(Random &random)
{
    const double hurt = random.skewed(6000.0, 1.2);
    const auto rounded = [](double value) {
        return static_cast<double>(qRound64(value));
    };
    return map({entry_of("KillScore", rounded(hurt * random.real(2.0, 20.0))),
                entry_of("Death", rounded(hurt * random.real(0.0, 0.2))),
                entry_of("Power", rounded(hurt * random.real(1.0, 10.0))),
                entry_of("BadHurt", rounded(hurt * random.real(0.0, 0.6))),
                entry_of("Hurt", rounded(hurt))});
}

double army_type(FieldKind kind, Random &random)
{
    switch (kind) {
    case FieldKind::Open:
        return random.chance(0.8) ? 1.0 : 6.0;
    case FieldKind::Rally:
        return 1.0;
    case FieldKind::Garrison:
        return random.chance(0.6) ? 2.0 : 4.0;
    }
    return 1.0;
}

QByteArray army(Random &random, const FieldFight &fight)
{
    const double hero_1 = random_hero(random);
    const double hero_2 = random.chance(0.8) ? random_hero(random) : 0.0;
    return join(
        {army_entries(random, hero_1, hero_2), entry("BuffList", buffs(random, fight.buffs_each))});
}

QByteArray attack(Random &random, const FieldFight &fight, double tick)
{
    QByteArray enemy = join({player_entries(random_player(random)), army(random, fight),
                             entry_of("CT", random.chance(0.8) ? 1.0 : 3.0)});
    if (random.chance(0.3)) // players carry the keys too, with nothing in them
        enemy += entry_of("NpcType", 0.0) + entry_of("NpcBType", 0.0);
    return map({entry("CIdt", map(enemy)), entry("Damage", score(random)),
                entry("Kill", score(random)), entry_of("Ets", tick),
                entry("Log", fight_log(random, fight.ticks_each)),
                entry("SelfTroops", troops(random, random.integer(1, 6))),
                entry("EnemyTroops", troops(random, random.integer(1, 6)))});
}

QByteArray self(Random &random, const FieldFight &fight)
{
    QByteArray fields = join({player_entries(fight.head.owner), army(random, fight),
                              entry_of("CT", army_type(fight.kind, random)),
                              entry("IsRally", small_value(fight.kind == FieldKind::Rally))});
    if (random.chance(0.8))
        fields += text_entry("CTK", "tour_" + fight.head.id);
    return map(fields);
}

} // namespace

QByteArray field_mail(Random &random, const FieldFight &fight)
{
    const double first_tick = random.whole(1000, 9000000);
    const double pace = (fight.head.time - fight.start) / fight.attacks;
    QByteArrayList attacks;
    for (int i = 1; i <= fight.attacks; ++i)
        attacks += attack(random, fight, first_tick + static_cast<double>(qRound64(pace * i)));

    const bool is_defended = fight.kind == FieldKind::Garrison;
    const QByteArray content =
        map({text_entry("Role", is_defended ? "def" : "atk"), entry_of("Bts", fight.start),
             entry_of("Btk", first_tick), entry_of("Ets", fight.head.time),
             entry("isConquerSeason", small_value(random.chance(0.3))),
             entry("SelfChar", self(random, fight)), entry("Attacks", array(attacks))});
    return finish_mail(random, head_entries(random, fight.head, "Battle") +
                                   entry("body", map({entry("content", content)})));
}

QByteArray sample_field_mail(quint32 seed)
{
    Random random(seed);
    FieldFight fight;
    fight.head = random_head(random);
    fight.attacks = random.integer(1, 3);
    fight.kind = random.pick(std::vector{FieldKind::Open, FieldKind::Rally, FieldKind::Garrison});
    fight.start = fight.head.time - 120.0 * fight.attacks;
    return field_mail(random, fight);
}

QByteArray large_field_mail()
{
    Random random(12);
    FieldFight fight;
    fight.head = random_head(random);
    fight.attacks = 12;
    fight.ticks_each = 150;
    fight.buffs_each = 50;
    fight.start = fight.head.time - 1500.0;
    return field_mail(random, fight);
}

} // namespace tally::sample
