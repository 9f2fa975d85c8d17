#pragma once

#include "data/mail/battle_report.h"

#include <QByteArrayView>

#include <vector>

namespace tally::data {

/// Rebuilds the fights of a chain mail from its raw bytes: each "NpcType" key opens one, and the
/// facts of a fight are the values of the keys around it. What the rest of the mail must supply
/// (level and base type of a round that has none of its own) is left absent.
/// \return the rounds by `ets`, largest first, and of equal ones by `disappear_tick`, smallest
/// first.
/// \throws OversizedMail beyond the bounds of a mail
std::vector<BattleRound> read_battle_rounds(QByteArrayView mail);

} // namespace tally::data
