#include "support/hostile_mails.h"

#include "data/mail/battle_report.h"
#include "data/mail/field_report.h"
#include "data/mail/key_marker.h"
#include "data/mail/mail_value.h"
#include "mail_encoder.h"

#include <algorithm>
#include <functional>

namespace tally::test {
namespace {

using namespace sample;
using data::key_marker;

const char map_tag = '\x05';
const char map_end = '\xff';

QByteArray joined(int count, qsizetype usual_size, const std::function<QByteArray(int)> &piece)
{
    QByteArray all;
    all.reserve(count * usual_size);
    for (int i = 0; i < count; ++i)
        all += piece(i);
    return all;
}

/// A battle, with what only a search of the bytes finds behind its tree.
QByteArray battle(const QByteArray &entries, const QByteArray &behind = {})
{
    return mail(entry("type", text("Battle")) + entry("Bts", number(1.7e9)) + entries) + behind;
}

QByteArray repeated(const QByteArray &piece, qsizetype size)
{
    return piece.repeated(size / piece.size());
}

QByteArray kill_loot(const QByteArray &entries)
{
    return entry("NpcKillLoot", map(entries));
}

/// One entry of loot whose only key holds a round, and the head of that round's own loot.
QByteArray nested_round(int index, bool closed)
{
    const QByteArray head = number(index) + map_tag;
    const QByteArray key = key_marker("NpcType") + number(index) + key_marker("NpcKillLoot") +
                           map_tag + head + key_marker("Value");
    return (closed ? head : QByteArray()) + text(key) + number(1) +
           (closed ? QByteArray(1, map_end) : QByteArray());
}

QByteArray round(int index)
{
    return entry("NpcType", number(index + 0.5)) + entry("NpcBType", number(index)) +
           entry("CtId", number(index)) + entry("Ets", number(index));
}

QByteArray one_fight()
{
    return round(1) + kill_loot({});
}

QByteArray loot_items(int count)
{
    return joined(count, 40, [](int i) { return entry(i + 1.0, map(entry("Value", number(i)))); });
}

QByteArray field(const QByteArray &content, const QByteArray &attacks)
{
    return mail(entry("type", text("Battle")) +
                entry("content", map(content + entry("Attacks", map(attacks)))));
}

QByteArray padded(QByteArray mail, qsizetype size)
{
    return mail.append(std::max<qsizetype>(0, size - mail.size()), 'x');
}

/// As many values as are allowed, each an empty map under a number, and as long texts.
QByteArray largest_tree(int values)
{
    constexpr int texts = 2;
    const QByteArray longest = text(QByteArray(data::max_text_bytes / texts - 200, 'x'));
    return entry("a", longest) + entry("b", longest) +
           joined(values, 11, [](int i) { return entry(i + 0.1, map()); });
}

constexpr int most_values = data::max_values - 100;

/// A shape of 512 keys that has come true, then maps inside one another that only begin like it,
/// over and over.
QByteArray deceiving_shapes(qsizetype size)
{
    const QByteArray shape =
        map(joined(512, 11, [](int i) { return entry(i + 0.5, small_value(0)); }));
    const QByteArray begin = QByteArray(1, map_tag) + number(0.5) + small_value(0);
    const int depth = data::max_nesting - 10;
    QByteArray nested;
    for (int i = 0; i < depth; ++i)
        nested += begin + text("a");
    nested += small_value(0) + QByteArray(depth, map_end);
    const QByteArray piece = entry("a", shape) + entry("a", shape) + entry("a", nested);
    return battle(one_fight() + repeated(piece, size - 1000));
}

/// A chain that stays inside all bounds and uses them up.
QByteArray largest_chain(qsizetype size)
{
    const auto all_rounds = static_cast<int>(data::max_rounds);
    constexpr int sharing = 770; // n rounds have n * n / 2 entries
    const QByteArray loot =
        kill_loot(joined(sharing, 90, [](int i) { return nested_round(i, true); }));
    QByteArray mail = battle(one_fight() + largest_tree(most_values),
                             loot + joined(all_rounds - sharing - 1, 80, round));
    return mail += repeated(entry("Ets", number(1)), size - mail.size());
}

} // namespace

QByteArray chain_of_shared_loot(int count)
{
    return battle({}, kill_loot(joined(count, 90, [](int i) { return nested_round(i, true); })));
}

QByteArray chain_of_endless_entries(int count)
{
    const QByteArray pairs = joined(count, 90, [](int i) { return nested_round(i, false); });
    return battle({}, kill_loot(entry(1.0, map(pairs))));
}

QByteArray chain_of_rounds(int count)
{
    return battle(kill_loot({}), joined(count, 80, round));
}

QByteArray field_of_attacks(int count, int name_length)
{
    return field(entry("SelfChar", map(entry("PName", text(QByteArray(name_length, 'x'))))),
                 joined(count, 11, [](int i) { return entry(i + 1.0, map()); }));
}

QByteArray field_of_buffs(int count)
{
    const QByteArray buffs =
        joined(count, 14, [](int i) { return QByteArray::number(i) + "_9e300;"; });
    return field(
        entry("SelfChar", map(entry("HWBs", map(entry(1.0, map(entry("Buffs", text(buffs)))))))),
        entry(1.0, map()));
}

QByteArray trial_of_loot(int participants, int items)
{
    const QByteArray one = map(entry("loots", map(loot_items(items))));
    return mail(
        entry("type", text("BarCanyonKillBoss")) +
        entry("body",
              map(entry("content",
                        map(entry("infos", map(joined(participants, one.size() + 9, [&](int i) {
                                      return entry(i + 1.0, one);
                                  }))))))));
}

QByteArray fort_of_loot(int items)
{
    const QByteArray spaces(5'000'000, ' ');
    return mail(entry("type", text("System")) +
                entry("body", map(entry("title", text("Barbarian Fort")) +
                                  entry("targetName", text("Level" + spaces)) +
                                  entry("content", text("dealt" + spaces)))) +
                entry("attachments", map(entry(1.0, map(entry("loot", map(loot_items(items))))))));
}

std::span<const HostileMail> hostile_mails()
{
    static constexpr HostileMail mails[] = {
        {"loot of all later rounds",
         [](qsizetype size) {
             return chain_of_shared_loot(static_cast<int>(size / 90));
         }},
        {"loot without an end",
         [](qsizetype size) {
             return chain_of_endless_entries(static_cast<int>(size / 90));
         }},
        {"largest chain", largest_chain},
        {"rounds of 100,000 types",
         [](qsizetype size) {
             return padded(chain_of_rounds(100'000), size);
         }},
        {"markers of rounds",
         [](qsizetype size) {
             return battle(one_fight(), repeated(key_marker("NpcType"), size - 1000));
         }},
        {"markers of times",
         [](qsizetype size) {
             return battle(one_fight(), repeated(key_marker("Ets"), size - 1000));
         }},
        {"many values",
         [](qsizetype size) {
             return battle(one_fight() + joined(static_cast<int>(size / 12), 12,
                                                [](int i) { return entry(i + 0.1, map()); }));
         }},
        {"many short texts",
         [](qsizetype size) {
             return battle(one_fight() + joined(static_cast<int>(size / 16), 16,
                                                [](int i) { return entry(i + 0.1, text("x")); }));
         }},
        {"one key repeated",
         [](qsizetype size) {
             const QByteArray pair = small_value(1) + small_value(1);
             return battle(one_fight() + repeated(pair, size - 1000));
         }},
        {"deceiving shapes", deceiving_shapes},
        {"attacks",
         [](qsizetype size) {
             return padded(field_of_attacks(data::max_attacks, 2'900), size);
         }},
        {"attacks in the largest tree",
         [](qsizetype size) {
             return padded(
                 field(largest_tree(most_values - 2 * data::max_attacks),
                       joined(data::max_attacks, 11, [](int i) { return entry(i + 1.0, map()); })),
                 size);
         }},
        {"buffs",
         [](qsizetype size) {
             return padded(field_of_buffs(10'000), size);
         }},
        {"loot of bosses",
         [](qsizetype size) {
             return padded(trial_of_loot(1, most_values / 2), size);
         }},
        {"participants",
         [](qsizetype size) {
             return padded(trial_of_loot(most_values / 4, 1), size);
         }},
        {"loot of forts",
         [](qsizetype size) {
             return padded(fort_of_loot(most_values / 2), size);
         }},
    };
    return mails;
}

} // namespace tally::test
