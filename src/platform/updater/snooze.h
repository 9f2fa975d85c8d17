#pragma once

#include "platform/clock/clock.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tally::data {
class TallyDb;
}

namespace tally::platform::Updater {

// An update can be postponed for a day; after that it is mandatory, unless a still newer version is
// offered. For the GUI thread. A store that fails counts as one without a postponement.

void snooze_24h(data::TallyDb *db, const QString &version, const Clock &clock = system_time);
void clear_snooze(data::TallyDb *db);

/// In UTC; nothing if there is no postponement, or none that can be read.
std::optional<QDateTime> snoozed_until(data::TallyDb *db);
QString snoozed_version(data::TallyDb *db);

/// \param latest the version that is offered
bool is_snoozed(data::TallyDb *db, const QString &latest, const Clock &clock = system_time);
bool snooze_expired(data::TallyDb *db, const QString &latest, const Clock &clock = system_time);

} // namespace tally::platform::Updater
