#include "costly_mails.h"

#include "data/mail/battle_report.h"
#include "data/mail/field_report.h"
#include "data/mail/key_marker.h"
#include "data/mail/mail_value.h"
#include "mail_encoder.h"
#include "support/hostile_mails.h"

#include <algorithm>

namespace tally::bench {
namespace {

using namespace sample;
using namespace test;
using data::key_marker;

QByteArray repeated(const QByteArray &piece, qsizetype size)
{
    return piece.repeated(size / piece.size());
}

QByteArray one_fight()
{
    return hostile_round(1) + kill_loot({});
}

QByteArray loot_items(int count)
{
    return joined(count, 40, [](int i) { return entry(i + 1.0, map(entry("Value", number(i)))); });
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
    const QByteArray begin = QByteArray(1, '\x05') + number(0.5) + small_value(0);
    const int depth = data::max_nesting - 10;
    QByteArray nested;
    for (int i = 0; i < depth; ++i)
        nested += begin + text("a");
    nested += small_value(0) + QByteArray(depth, '\xff');
    const QByteArray piece = entry("a", shape) + entry("a", shape) + entry("a", nested);
    return hostile_battle(one_fight() + repeated(piece, size - 1000));
}

/// A chain that stays inside all bounds and uses them up.
QByteArray largest_chain(qsizetype size)
{
    const auto all_rounds = static_cast<int>(data::max_rounds);
    constexpr int sharing = 770; // n rounds have n * n / 2 entries
    const QByteArray loot =
        kill_loot(joined(sharing, 90, [](int i) { return nested_round(i, true); }));
    QByteArray mail = hostile_battle(one_fight() + largest_tree(most_values),
                                     loot + joined(all_rounds - sharing - 1, 80, hostile_round));
    return mail += repeated(entry("Ets", number(1)), size - mail.size());
}

/// A boss kill of so many participants with the same items.
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

} // namespace

std::span<const CostlyMail> costly_mails()
{
    static constexpr CostlyMail mails[] = {
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
             return hostile_battle(one_fight(), repeated(key_marker("NpcType"), size - 1000));
         }},
        {"markers of times",
         [](qsizetype size) {
             return hostile_battle(one_fight(), repeated(key_marker("Ets"), size - 1000));
         }},
        {"many values",
         [](qsizetype size) {
             return hostile_battle(one_fight() + joined(static_cast<int>(size / 12), 12, [](int i) {
                                       return entry(i + 0.1, map());
                                   }));
         }},
        {"many short texts",
         [](qsizetype size) {
             return hostile_battle(one_fight() + joined(static_cast<int>(size / 16), 16, [](int i) {
                                       return entry(i + 0.1, text("x"));
                                   }));
         }},
        {"one key repeated",
         [](qsizetype size) {
             const QByteArray pair = small_value(1) + small_value(1);
             return hostile_battle(one_fight() + repeated(pair, size - 1000));
         }},
        {"deceiving shapes", deceiving_shapes},
        {"attacks",
         [](qsizetype size) {
             return padded(field_of_attacks(data::max_attacks, 2'900), size);
         }},
        {"attacks in the largest tree",
         [](qsizetype size) {
             return padded(hostile_field(largest_tree(most_values - 2 * data::max_attacks),
                                         joined(data::max_attacks, 11,
                                                [](int i) { return entry(i + 1.0, map()); })),
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

} // namespace tally::bench
