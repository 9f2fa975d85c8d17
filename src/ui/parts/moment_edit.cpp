#include "ui/parts/moment_edit.h"

#include <QCalendarWidget>
#include <QDateEdit>
#include <QTimeEdit>

namespace tally::ui {

namespace {

/// The calendar reckons without the sheet's borders and padding, which cost it its last week.
void make_room(QCalendarWidget &calendar)
{
    constexpr QSize more(60, 50);
    calendar.setMinimumSize(calendar.sizeHint() + more);
}

} // namespace

QDateEdit *new_date_edit(const QString &accessible_name)
{
    auto *date = new QDateEdit;
    date->setCalendarPopup(true);
    date->setTimeSpec(Qt::UTC); // local time lacks some hours
    date->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    date->setAccessibleName(accessible_name);
    make_room(*date->calendarWidget());
    return date;
}

MomentEdit::MomentEdit(const QString &label, QTime time_of_new_date, QWidget *parent)
    : MomentRow(parent), date_(new_date_edit({})), time_(new QTimeEdit)
{
    time_->setTimeSpec(Qt::UTC);
    time_->setDisplayFormat(QStringLiteral("HH:mm"));
    constexpr int spacing = 6;
    lay_out(label, date_, time_, spacing);

    connect(date_, &QDateEdit::dateChanged, this, [this, time_of_new_date] {
        time_->setTime(time_of_new_date);
        Q_EMIT changed();
    });
    connect(time_, &QTimeEdit::timeChanged, this, &MomentEdit::changed);
}

QDate MomentEdit::date() const
{
    return date_->date();
}

QTime MomentEdit::time() const
{
    return time_->time();
}

void MomentEdit::set(QDate date, QTime time)
{
    date_->setDate(date);
    time_->setTime(time);
}

void MomentEdit::shift_date(int days)
{
    date_->setDate(date_->date().addDays(days));
}

} // namespace tally::ui
