#pragma once

#include "data/mail/loot_entry.h"

#include <QByteArrayView>
#include <QString>

#include <optional>
#include <vector>

namespace tally::data {

/// The reward mail of a barbarian fort. Times are seconds since the Unix epoch.
struct FortReport {
    QString mail_id;
    qint32 fort_level = 0;
    std::optional<qint32> tile_x;
    std::optional<qint32> tile_y;
    qint32 damage_percent = 0;
    double event_time = 0.0;
    std::vector<LootEntry> loot;
};

/// Reads a fort reward mail.
/// \return nothing if the bytes are no usable fort mail
/// \throws OversizedMail beyond the bounds of a mail, and nothing else on bad input
std::optional<FortReport> parse_fort(QByteArrayView mail);
/// The same for a file; one that cannot be read counts as empty.
std::optional<FortReport> parse_fort(const QString &path);

} // namespace tally::data
