#include "platform/updater/snooze.h"

#include "platform/updater/version_record.h"
#include "settings/catalogue.h"
#include "settings/settings.h"

namespace tally::platform::Updater {
namespace {

QDateTime utc(const Clock &clock)
{
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(clock() * 1000.0), Qt::UTC);
}

/// Until when the version that is offered is postponed.
std::optional<QDateTime> snooze_of(data::TallyDb *db, const QString &latest)
{
    const auto until = snoozed_until(db);
    return until && !is_newer(latest, snoozed_version(db)) ? until : std::nullopt;
}

} // namespace

void snooze_24h(data::TallyDb *db, const QString &version, const Clock &clock)
{
    constexpr qint64 day = 86'400; // seconds
    Settings settings(*db);
    settings.set(settings::update_snoozed_until, utc(clock).addSecs(day).toString(Qt::ISODate));
    settings.set(settings::update_snoozed_version, version);
}

void clear_snooze(data::TallyDb *db)
{
    Settings settings(*db);
    settings.set(settings::update_snoozed_until, QString());
    settings.set(settings::update_snoozed_version, QString());
}

std::optional<QDateTime> snoozed_until(data::TallyDb *db)
{
    const QString text = Settings(*db).get(settings::update_snoozed_until);
    if (text.isEmpty())
        return std::nullopt;
    QDateTime until = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!until.isValid())
        until = QDateTime::fromString(text, Qt::ISODate);
    if (!until.isValid())
        return std::nullopt;
    if (until.timeSpec() == Qt::LocalTime) // somebody has left the zone out
        until.setTimeSpec(Qt::UTC);
    return until.toUTC();
}

QString snoozed_version(data::TallyDb *db)
{
    return Settings(*db).get(settings::update_snoozed_version);
}

bool is_snoozed(data::TallyDb *db, const QString &latest, const Clock &clock)
{
    const auto until = snooze_of(db, latest);
    return until && utc(clock) < *until;
}

bool snooze_expired(data::TallyDb *db, const QString &latest, const Clock &clock)
{
    const auto until = snooze_of(db, latest);
    return until && utc(clock) >= *until;
}

} // namespace tally::platform::Updater
