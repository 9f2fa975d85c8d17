#pragma once

#include <QByteArray>

#include <functional>

namespace tally::test {

/// Mails made to cost more than their size: each is a small piece that a reader pays much for, over
/// and over.

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

/// The pieces of such mails.

QByteArray joined(int count, qsizetype usual_size, const std::function<QByteArray(int)> &piece);
/// A battle, with what only a search of the bytes finds behind its tree.
QByteArray hostile_battle(const QByteArray &entries, const QByteArray &behind = {});
QByteArray hostile_field(const QByteArray &content, const QByteArray &attacks);
QByteArray hostile_round(int index);
QByteArray kill_loot(const QByteArray &entries);
/// One entry of loot whose only key holds a round, and the head of that round's own loot.
QByteArray nested_round(int index, bool closed);

} // namespace tally::test
