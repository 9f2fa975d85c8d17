#include "ui/parts/local_time.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace tally::ui {
namespace {

/// Mails are bounded by nothing; years of five digits are on no clock.
QDateTime local(double seconds)
{
    constexpr double latest = 253'402'300'799.0; // the end of the year 9999
    const double bounded = std::isfinite(seconds) ? std::clamp(seconds, -latest, latest) : 0.0;
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(std::floor(bounded)));
}

} // namespace

QString local_time_text(double seconds, const QString &format)
{
    if (!std::isfinite(seconds) || seconds == 0.0)
        return QStringLiteral("?");
    return local(seconds).toString(format);
}

QDate local_date(double seconds)
{
    return local(seconds).date();
}

double start_of_local_day(QDate day)
{
    return static_cast<double>(day.startOfDay().toSecsSinceEpoch());
}

double end_of_local_day(QDate day)
{
    return static_cast<double>(QDateTime(day, QTime(23, 59, 59)).toSecsSinceEpoch());
}

} // namespace tally::ui
