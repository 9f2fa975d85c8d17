#include "ui/parts/day_watch.h"

#include "data/store/sql_values.h"

#include <QDateTime>

#include <utility>

namespace tally::ui {
namespace {

QDate day_of(double seconds)
{
    return QDateTime::fromSecsSinceEpoch(data::saturated<qint64>(seconds), Qt::UTC).date();
}

} // namespace

DayWatch::DayWatch(platform::Clock clock, QObject *parent, std::chrono::milliseconds interval)
    : QObject(parent), clock_(std::move(clock)), today_(day_of(clock_()))
{
    timer_.setTimerType(Qt::VeryCoarseTimer);
    connect(&timer_, &QTimer::timeout, this, &DayWatch::look);
    timer_.start(interval);
}

void DayWatch::look()
{
    const QDate now = day_of(clock_());
    if (now == today_)
        return;
    const QDate before = std::exchange(today_, now);
    Q_EMIT dayChanged(before, now);
}

} // namespace tally::ui
