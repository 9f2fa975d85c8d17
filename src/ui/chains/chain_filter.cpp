#include "ui/chains/chain_filter.h"

#include <QDateTime>

namespace tally::ui {
namespace {

double seconds_of(QDate date, QTime time)
{
    return static_cast<double>(QDateTime(date, time, Qt::UTC).toSecsSinceEpoch());
}

} // namespace

ChainFilter chain_filter(double btype, const ChainPeriod &period, std::optional<double> player)
{
    constexpr double minute = 60.0;
    return {btype, seconds_of(period.from_date, period.from_time),
            seconds_of(period.to_date, period.to_time) + minute, player};
}

} // namespace tally::ui
