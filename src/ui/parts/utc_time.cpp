#include "ui/parts/utc_time.h"

#include "data/store/sql_values.h"

#include <QDateTime>

#include <algorithm>

namespace tally::ui {

QString utc_time_text(double seconds, const QString &format)
{
    constexpr double latest = 253'402'300'799.0; // the end of the year 9999
    if (!(seconds > 0.0))
        return QStringLiteral("?");
    const auto whole = static_cast<qint64>(std::min(seconds, latest));
    return QDateTime::fromSecsSinceEpoch(whole, Qt::UTC).toString(format);
}

QString utc_moment_text(double seconds, const QString &format)
{
    const auto moment = QDateTime::fromSecsSinceEpoch(data::saturated<qint64>(seconds), Qt::UTC);
    return moment.isValid() ? moment.toString(format) : QStringLiteral("?");
}

QDate utc_date(double seconds)
{
    return QDateTime::fromSecsSinceEpoch(data::saturated<qint64>(seconds), Qt::UTC).date();
}

} // namespace tally::ui
