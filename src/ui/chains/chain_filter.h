#pragma once

#include <QDate>
#include <QString>
#include <QTime>

#include <optional>

namespace tally::ui {

/// What the figures of chains are asked for. Seconds since the Unix epoch; `from` is included, `to`
/// is not.
struct ChainFilter {
    double btype = 1.0; ///< the npc base type
    std::optional<double> from;
    std::optional<double> to;
    std::optional<double> player;

    bool operator==(const ChainFilter &) const = default;
};

/// A period as it is entered, in UTC, with all of its last minute.
struct ChainPeriod {
    QDate from_date;
    QTime from_time;
    QDate to_date;
    QTime to_time;

    static QTime day_start() { return {0, 0}; }
    static QTime day_end() { return {23, 59}; }
    static ChainPeriod of_day(QDate day) { return {day, day_start(), day, day_end()}; }

    bool operator==(const ChainPeriod &) const = default;
};

ChainFilter chain_filter(double btype, const ChainPeriod &period, std::optional<double> player);

} // namespace tally::ui
