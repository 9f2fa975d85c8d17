#include "mail_parts.h"

#include <array>

namespace tally::sample {
namespace {

struct Item {
    double type;
    double subtype;
    int low;
    int high;
};

constexpr std::array items = {
    Item{1, 1, 1000, 50000},    Item{1, 2, 1000, 50000},  Item{1, 3, 500, 40000},
    Item{1, 4, 100, 9000},      Item{2, 34, 1, 5},        Item{2, 71, 1, 5},
    Item{2, 92, 1, 3},          Item{4, 200001, 1, 10},   Item{4, 200002, 1, 10},
    Item{4, 200310, 1, 2},      Item{6, 300017, 1, 1},    Item{9, 0, 10, 400},
    Item{13, 401000012, 1, 20}, Item{14, 5500003, 1, 40},
};

constexpr std::array<QByteArrayView, 12> sentences = {
    "Gather at the pass before reset and wait for the signal.",
    "Please donate to the alliance technology today.",
    "Thanks to everybody who joined the rallies last night.",
    "Отправьте войска к северному проходу до 18:00 UTC.",
    "The flag near the crystal mine burns, send reinforcements.",
    "Neue Mitglieder stellen sich bitte im Kanal vor.",
    "Rewards were sent to all members with enough points.",
    "请在重置前完成捐献。",
    "Do not attack farms of our neighbours, a treaty holds until Sunday.",
    "Shields up during the ceasefire, no exceptions.",
    "Who still needs help with the ruins? Sign up below.",
    "Zajmijcie flagę, zanim zrobią to inni.",
};

QByteArray digits(Random &random, int low, int high)
{
    return QByteArray::number(random.integer(low, high));
}

QByteArray hero_detail(Random &random, QByteArrayView suffix)
{
    const auto key = [suffix](QByteArrayView name) {
        return name.toByteArray().append(suffix);
    };
    QByteArrayList skills;
    const int skill_count = random.integer(4, 6);
    for (int i = 0; i < skill_count; ++i)
        skills += map({entry_of("SkillId", random.whole(1000, 4999)),
                       entry_of("SkillLevel", random.whole(1, 5))});

    QByteArray equipment;
    QByteArrayList places;
    for (int slot = 1; slot <= 8; ++slot) {
        equipment += join({QByteArray::number(slot), ":", digits(random, 20100, 20990), "_",
                           digits(random, 0, 5), ";"});
        QByteArray strengths;
        const int strength_count = random.integer(1, 4);
        for (int i = 0; i < strength_count; ++i)
            strengths +=
                join({i > 0 ? ";" : "", digits(random, 20, 1300), "_0.", digits(random, 100, 999)});
        QByteArray fields = text_entry("Buffs", strengths) + entry_of("Lv", random.whole(1, 40));
        if (random.chance(0.6))
            fields += entry_of("Affix", random.whole(30001, 30150));
        places += map(fields);
    }
    return join(
        {entry_of(key("HLv"), random.whole(30, 60)), entry_of(key("HSt"), random.whole(3, 6)),
         entry(key("HAw"), small_value(random.chance(0.5))), entry(key("HSS"), array(skills)),
         text_entry(key("HEq"), equipment), entry(key("HWBs"), array(places))});
}

} // namespace

QByteArray join(std::initializer_list<QByteArray> pieces)
{
    QByteArray all;
    for (const QByteArray &piece : pieces)
        all += piece;
    return all;
}

QByteArray entry_of(QByteArrayView key, double value)
{
    return entry(key, number(value));
}

QByteArray text_entry(QByteArrayView key, QByteArrayView utf8)
{
    return entry(key, text(utf8));
}

QByteArray head_entries(Random &random, const MailHead &head, QByteArrayView type)
{
    return text_entry("id", head.id) + text_entry("box", head.box) + text_entry("type", type) +
           text_entry("receiver", "player_" + QByteArray::number(head.owner.id, 'f', 0)) +
           text_entry("sender", "server") + text_entry("serverId", "c13" + head.id.right(2)) +
           entry_of("time", static_cast<double>(qRound64(head.time * 1e6))) +
           entry("status", small_value(random.chance(0.7))) +
           entry("isReportBattle", small_value(type == "Battle"));
}

QByteArray finish_mail(Random &random, const QByteArray &entries)
{
    return mail(entries, random.bytes(random.integer(24, 160)));
}

QByteArray loot(Random &random, int size)
{
    QByteArrayList list;
    for (int i = 0; i < size; ++i) {
        const Item &item = random.pick(items);
        list += map({entry_of("SubType", item.subtype), entry_of("Type", item.type),
                     entry_of("Value", random.whole(item.low, item.high))});
    }
    return array(list);
}

QByteArray player_entries(const Player &player)
{
    return entry_of("PId", player.id) + text_entry("PName", player.name) +
           text_entry("AName", player.alliance) + text_entry("Abbr", player.alliance_tag);
}

QByteArray army_entries(Random &random, double hero_1, double hero_2)
{
    return join({entry_of("HId", hero_1), entry_of("HId2", hero_2),
                 entry_of("COSId", random.whole(1000, 2999)), entry_of("HFMs", random.whole(1, 9)),
                 hero_detail(random, ""), hero_detail(random, "2"),
                 entry("Troops", troops(random, random.integer(2, 8)))});
}

QByteArray troops(Random &random, int kinds)
{
    QByteArrayList list;
    for (int i = 0; i < kinds; ++i)
        list += map({entry_of("Tp", random.whole(1, 4)), entry_of("Lv", random.whole(1, 5)),
                     entry_of("Num", random.whole(100, 90000)),
                     entry_of("Lost", random.whole(0, 9000))});
    return array(list);
}

QByteArray fight_log(Random &random, int ticks)
{
    QByteArrayList list;
    double tick = 0.0;
    for (int i = 0; i < ticks; ++i) {
        tick += random.whole(1, 3);
        list += map({entry_of("T", tick), entry_of("D", random.whole(0, 9000)),
                     entry_of("R", random.whole(0, 9000))});
    }
    return array(list);
}

QByteArray buffs(Random &random, int size)
{
    QByteArrayList list;
    for (int i = 0; i < size; ++i)
        list += map({entry_of("Id", random.whole(20, 1300)),
                     entry_of("Val", random.whole(1, 500) / 1000),
                     entry_of("Src", random.whole(1, 12))});
    return array(list);
}

QByteArray roster(Random &random, int size)
{
    QByteArrayList list;
    for (int i = 0; i < size; ++i) {
        const Player player = random_player(random);
        list += map({text_entry("name", player.name), entry_of("uid", player.id),
                     entry_of("power", random.whole(100000, 90000000)),
                     entry("rank", small_value(static_cast<quint8>(random.integer(1, 5))))});
    }
    return array(list);
}

QByteArray prose(Random &random, int size)
{
    QByteArray result;
    while (result.size() < size)
        result.append(random.pick(sentences)).append(random.chance(0.1) ? '\n' : ' ');
    return result;
}

double random_hero(Random &random)
{
    return random.whole(1, 200);
}

MailHead random_head(Random &random)
{
    MailHead head;
    head.id = QByteArray::number(random.integer(1000000000, 2000000000));
    head.owner = random_player(random);
    head.time = 1750000000.0 + random.integer(0, 999999999) / 1000.0;
    return head;
}

} // namespace tally::sample
