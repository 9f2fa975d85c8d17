#include "ui/parts/local_dates.h"

#include "ui/parts/local_time.h"

#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>

#include <utility>

namespace tally::ui {
namespace {

constexpr int days_shown = 7;

} // namespace

LocalDates::LocalDates(platform::Clock clock, QWidget *parent)
    : QWidget(parent), clock_(std::move(clock)), today_(local_date(clock_()))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    from_ = add_date(QStringLiteral("From"));
    to_ = add_date(QStringLiteral("To"));
    from_->setDate(today_.addDays(-days_shown));
    to_->setDate(today_);
    // A timer until midnight would be late after a sleep of the computer.
    watch_.setTimerType(Qt::VeryCoarseTimer);
    connect(&watch_, &QTimer::timeout, this, &LocalDates::follow_the_calendar);
    watch_.start(60'000);
}

QDateEdit *LocalDates::add_date(const QString &name)
{
    auto *label = new QLabel(name + u':');
    auto *date = new QDateEdit;
    date->setCalendarPopup(true);
    date->setTimeSpec(Qt::UTC); // only the day counts, and local days may lack their midnight
    date->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    date->setAccessibleName(name);
    label->setBuddy(date);
    layout()->addWidget(label);
    layout()->addWidget(date);
    return date;
}

double LocalDates::from() const
{
    return start_of_local_day(from_->date());
}

double LocalDates::to() const
{
    return end_of_local_day(to_->date());
}

void LocalDates::follow_the_calendar()
{
    const QDate now = local_date(clock_());
    const QDate before = std::exchange(today_, now);
    if (now == before)
        return;
    bool followed = false;
    for (const auto &[date, days] : {std::pair(from_, -days_shown), std::pair(to_, 0)}) {
        if (date->date() != before.addDays(days))
            continue;
        date->setDate(now.addDays(days));
        followed = true;
    }
    if (followed)
        Q_EMIT newDay();
}

} // namespace tally::ui
