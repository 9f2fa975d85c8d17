#pragma once

#include <QString>
#include <QVariant>

namespace tally::data {

/// A hero's skills, buffs and inscriptions as the short texts that the store keeps. Each takes a
/// map from slot keys to maps and gives the empty text for anything else.

/// Skill ids and levels by slot number: "#1201 L5; #1202 L3".
QString format_skills(const QVariant &slots_by_key);

/// A hero of the game has some dozen buffs.
inline constexpr qsizetype max_buffs_of_hero = 10'000;

/// Buff strengths in per cent, summed by buff id over all slots: "buff1204: 12.5%; buff31: 3.0%".
/// \throws OversizedMail for more than `max_buffs_of_hero` ids
QString format_buffs(const QVariant &slots_by_key);

/// Inscriptions by slot: "S1:#30021; S2:#30102".
QString format_inscriptions(const QVariant &slots_by_key);

} // namespace tally::data
