#pragma once

#include "platform/clock/clock.h"

#include <QDate>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace tally::ui {

/// Tells when a new day (UTC) has begun, also after a sleep of the computer.
class DayWatch : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds shipped_interval{60'000};

    DayWatch(platform::Clock clock, QObject *parent,
             std::chrono::milliseconds interval = shipped_interval);

    QDate today() const { return today_; }

Q_SIGNALS:
    void dayChanged(QDate before, QDate now);

private:
    void look();

    platform::Clock clock_;
    QDate today_;
    QTimer timer_;
};

} // namespace tally::ui
