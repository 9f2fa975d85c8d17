#pragma once

#include "platform/clock/clock.h"

#include <QDate>
#include <QTimer>
#include <QWidget>

class QDateEdit;

namespace tally::ui {

/// Two days, from and to, of the user's calendar: at first the last week. A date that still stands
/// where it started goes along with the calendar, so that a window left open shows the new day.
class LocalDates : public QWidget {
    Q_OBJECT

public:
    explicit LocalDates(platform::Clock clock, QWidget *parent = nullptr);

    double from() const; ///< the start of the first day, in seconds since the Unix epoch
    double to() const;   ///< 23:59:59 of the last day

    /// Looks whether a new day has begun; does so by itself every minute.
    void follow_the_calendar();

Q_SIGNALS:
    void newDay(); ///< a date went along

private:
    QDateEdit *add_date(const QString &name);

    platform::Clock clock_;
    QDateEdit *from_;
    QDateEdit *to_;
    QDate today_;
    QTimer watch_;
};

} // namespace tally::ui
