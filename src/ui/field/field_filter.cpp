#include "ui/field/field_filter.h"

#include <QDateTime>

namespace tally::ui {
namespace {

const QString date_format = QStringLiteral("yyyy-MM-dd");

QString with_seconds(const QString &time)
{
    constexpr int hours_and_minutes = 5;
    const bool lacks_seconds = time.size() == hours_and_minutes && time.count(u':') == 1;
    return lacks_seconds ? time + QStringLiteral(":00") : time;
}

} // namespace

std::optional<double> typed_moment(const MomentTexts &texts, const QString &time_if_empty)
{
    const QString typed_time = texts.time.trimmed();
    const QDate date = QDate::fromString(texts.date.trimmed(), date_format);
    const QTime time =
        QTime::fromString(typed_time.isEmpty() ? time_if_empty : with_seconds(typed_time),
                          QStringLiteral("HH:mm:ss"));
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    constexpr double milliseconds = 1000.0;
    return static_cast<double>(QDateTime(date, time, Qt::UTC).toMSecsSinceEpoch()) / milliseconds;
}

FieldFilter field_filter(const MomentTexts &from, const MomentTexts &to,
                         std::optional<double> player)
{
    constexpr double minute = 60.0;
    std::optional<double> end = typed_moment(to, QStringLiteral("23:59:00"));
    if (end)
        *end += minute;
    return {typed_moment(from, QStringLiteral("00:00:00")), end, player};
}

QString shifted_date(const QString &date, int days, QDate today)
{
    const QDate typed = QDate::fromString(date.trimmed(), date_format);
    return (typed.isValid() ? typed : today).addDays(days).toString(date_format);
}

} // namespace tally::ui
