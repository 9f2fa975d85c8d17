#pragma once

#include "data/mail/loot_entry.h"

#include <QByteArrayView>
#include <QString>

#include <optional>
#include <vector>

namespace tally::data {

struct TrialParticipant {
    std::optional<double> player_id;
    QString player_name;
    double damage_rate = 0.0; ///< share of the damage, 0 to 1
    qint32 order_ = 0;
    std::vector<LootEntry> loot;
};

/// One boss kill. Times are seconds since the Unix epoch.
struct TrialReport {
    QString mail_id;
    QString boss_name;
    std::optional<double> npc_type;
    std::optional<double> npc_level;
    std::optional<qint32> tile_x;
    std::optional<qint32> tile_y;
    double event_time = 0.0;
    std::vector<TrialParticipant> participants;
};

/// Reads a boss kill mail.
/// \return nothing if the bytes are no usable boss kill mail
/// \throws OversizedMail beyond the bounds of a mail, and nothing else on bad input
std::optional<TrialReport> parse_trial(QByteArrayView mail);
/// The same for a file; one that cannot be read counts as empty.
std::optional<TrialReport> parse_trial(const QString &path);

} // namespace tally::data
