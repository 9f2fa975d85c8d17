#pragma once

#include <QByteArray>

#include <span>

namespace tally::test {

/// Mails made to cost more than their size: each is a small piece that a reader pays much for, over
/// and over. They reach the bounds of mails, and most go beyond.

/// `count` rounds, each in a key of the loot of the one before, so that the loot of each runs on
/// through the loot of all that follow.
QByteArray chain_of_shared_loot(int count);
/// The same with all numbers in one entry of loot.
QByteArray chain_of_endless_entries(int count);
/// `count` rounds without loot, each with a base type, a type and a barbarian of its own.
QByteArray chain_of_rounds(int count);
/// `count` attacks by a player whose name is so long.
QByteArray field_of_attacks(int count, int name_length);
/// A field fight whose hero has `count` buffs, each with a strength of three hundred digits.
QByteArray field_of_buffs(int count);
/// Boss kill with one participant for each `items` items of the loot.
QByteArray trial_of_loot(int participants, int items);
QByteArray fort_of_loot(int items);

/// A mail of this size that costs a reader much.
struct HostileMail {
    const char *name;
    QByteArray (*make)(qsizetype size);
};
std::span<const HostileMail> hostile_mails();

} // namespace tally::test
