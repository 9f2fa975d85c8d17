#pragma once

#include "mail_encoder.h"
#include "sample_mails.h"

namespace tally::sample {

/// Pieces that several kinds of mail share. The keys of the logs and lists are none of those that
/// the chain extraction searches as raw bytes, so that they may stand anywhere.

/// The pieces one after the other. A braced list is evaluated from left to right, while the
/// operands of a `+` that draw from one random source give other bytes with another compiler.
QByteArray join(std::initializer_list<QByteArray> pieces);

QByteArray entry_of(QByteArrayView key, double value);
QByteArray text_entry(QByteArrayView key, QByteArrayView utf8);

/// The root entries in front of the content: id, box, type, receiver and "time".
QByteArray head_entries(Random &random, const MailHead &head, QByteArrayView type);
/// The whole mail behind bytes of an opaque header.
QByteArray finish_mail(Random &random, const QByteArray &entries);

/// An array of `size` items with "Type", "SubType" and "Value".
QByteArray loot(Random &random, int size);

/// "PId", names and alliance.
QByteArray player_entries(const Player &player);
/// Hero ids, levels, skills, equipment and inscriptions, then troops. The ids come first.
QByteArray army_entries(Random &random, double hero_1, double hero_2);

QByteArray troops(Random &random, int kinds);
/// Damage by tick of a fight.
QByteArray fight_log(Random &random, int ticks);
QByteArray buffs(Random &random, int size);
/// Players with their power: what alliance mails and scout reports carry.
QByteArray roster(Random &random, int size);

/// Sentences of about `size` bytes in all.
QByteArray prose(Random &random, int size);

double random_hero(Random &random);
/// A head for a mail that stands alone.
MailHead random_head(Random &random);

} // namespace tally::sample
