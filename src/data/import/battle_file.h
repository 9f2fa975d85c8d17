#pragma once

#include "data/mail/battle_report.h"

#include <QString>

#include <optional>

namespace tally::data {

/// The level that the reference tables know for a barbarian type.
std::optional<int> known_level(double npc_type);

/// The chain in a mail file, with levels from the reference tables. Nothing for a file that cannot
/// be read or is no usable battle mail; never throws on bad input.
std::optional<BattleReport> parse_battle(const QString &path);

} // namespace tally::data
