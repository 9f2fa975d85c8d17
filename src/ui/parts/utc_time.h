#pragma once

#include <QDate>
#include <QString>

namespace tally::ui {

/// Times of the store, seconds since the Unix epoch, on the game's calendar, which is UTC.

/// \param seconds 0 or less, and what is no time at all, reads "?"
QString utc_time_text(double seconds, const QString &format);
/// Of a moment that may lie before 1970 as well.
/// \param seconds what no calendar has reads "?"
QString utc_moment_text(double seconds, const QString &format);
QDate utc_date(double seconds);

} // namespace tally::ui
