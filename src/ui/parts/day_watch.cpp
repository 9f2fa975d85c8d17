#include "ui/parts/day_watch.h"

#include "ui/parts/utc_time.h"

#include <utility>

namespace tally::ui {

DayWatch::DayWatch(platform::Clock clock, QObject *parent, std::chrono::milliseconds interval)
    : QObject(parent), clock_(std::move(clock)), today_(utc_date(clock_()))
{
    timer_.setTimerType(Qt::VeryCoarseTimer);
    connect(&timer_, &QTimer::timeout, this, &DayWatch::look);
    timer_.start(interval);
}

void DayWatch::look()
{
    const QDate now = utc_date(clock_());
    if (now == today_)
        return;
    const QDate before = std::exchange(today_, now);
    Q_EMIT dayChanged(before, now);
}

} // namespace tally::ui
