#include "ui/parts/moment_edit.h"

#include "ui/parts/day_buttons.h"

#include <QCalendarWidget>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
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
    : QWidget(parent)
{
    const QString name = label.section(u' ', 0, 0);
    auto *text = new QLabel(label);
    const auto [previous, next] = new_day_buttons(name);
    date_ = new_date_edit(QStringLiteral("%1 date (UTC)").arg(name));
    time_ = new QTimeEdit;
    time_->setTimeSpec(Qt::UTC);
    time_->setDisplayFormat(QStringLiteral("HH:mm"));
    time_->setAccessibleName(QStringLiteral("%1 time (UTC)").arg(name));

    constexpr int spacing = 6;
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    for (QWidget *part : std::initializer_list<QWidget *>{text, previous, date_, next, time_})
        row->addWidget(part);
    text->setBuddy(date_);

    connect(date_, &QDateEdit::dateChanged, this, [this, time_of_new_date] {
        time_->setTime(time_of_new_date);
        Q_EMIT changed();
    });
    connect(time_, &QTimeEdit::timeChanged, this, &MomentEdit::changed);
    connect(previous, &QPushButton::clicked, this, [this] { Q_EMIT dayStepped(-1); });
    connect(next, &QPushButton::clicked, this, [this] { Q_EMIT dayStepped(1); });
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
