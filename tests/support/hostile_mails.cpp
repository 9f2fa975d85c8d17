#include "support/hostile_mails.h"

#include "data/mail/key_marker.h"
#include "mail_encoder.h"

namespace tally::test {

using namespace sample;
using data::key_marker;

namespace {

const char map_tag = '\x05';
const char map_end = '\xff';

} // namespace

QByteArray joined(int count, qsizetype usual_size, const std::function<QByteArray(int)> &piece)
{
    QByteArray all;
    all.reserve(count * usual_size);
    for (int i = 0; i < count; ++i)
        all += piece(i);
    return all;
}

QByteArray hostile_battle(const QByteArray &entries, const QByteArray &behind)
{
    return mail(entry("type", text("Battle")) + entry("Bts", number(1.7e9)) + entries) + behind;
}

QByteArray kill_loot(const QByteArray &entries)
{
    return entry("NpcKillLoot", map(entries));
}

QByteArray nested_round(int index, bool closed)
{
    const QByteArray head = number(index) + map_tag;
    const QByteArray key = key_marker("NpcType") + number(index) + key_marker("NpcKillLoot") +
                           map_tag + head + key_marker("Value");
    return (closed ? head : QByteArray()) + text(key) + number(1) +
           (closed ? QByteArray(1, map_end) : QByteArray());
}

QByteArray hostile_round(int index)
{
    return entry("NpcType", number(index + 0.5)) + entry("NpcBType", number(index)) +
           entry("CtId", number(index)) + entry("Ets", number(index));
}

QByteArray hostile_field(const QByteArray &content, const QByteArray &attacks)
{
    return mail(entry("type", text("Battle")) +
                entry("content", map(content + entry("Attacks", map(attacks)))));
}

QByteArray chain_of_shared_loot(int count)
{
    return hostile_battle(
        {}, kill_loot(joined(count, 90, [](int i) { return nested_round(i, true); })));
}

QByteArray chain_of_endless_entries(int count)
{
    const QByteArray pairs = joined(count, 90, [](int i) { return nested_round(i, false); });
    return hostile_battle({}, kill_loot(entry(1.0, map(pairs))));
}

QByteArray chain_of_rounds(int count)
{
    return hostile_battle(kill_loot({}), joined(count, 80, hostile_round));
}

QByteArray field_of_attacks(int count, int name_length)
{
    return hostile_field(entry("SelfChar", map(entry("PName", text(QByteArray(name_length, 'x'))))),
                         joined(count, 11, [](int i) { return entry(i + 1.0, map()); }));
}

QByteArray field_of_buffs(int count)
{
    const QByteArray buffs =
        joined(count, 14, [](int i) { return QByteArray::number(i) + "_9e300;"; });
    return hostile_field(
        entry("SelfChar", map(entry("HWBs", map(entry(1.0, map(entry("Buffs", text(buffs)))))))),
        entry(1.0, map()));
}

} // namespace tally::test
