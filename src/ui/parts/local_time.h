#pragma once

#include <QDate>
#include <QString>

namespace tally::ui {

/// Times of the store, seconds since the Unix epoch, as they read on the user's clock.

/// \param seconds 0, and what is no time at all, reads "?"
QString local_time_text(double seconds, const QString &format);
QDate local_date(double seconds);

/// The first moment of a day; in some places the clock jumps over midnight itself.
double start_of_local_day(QDate day);
/// 23:59:59 of a day.
double end_of_local_day(QDate day);

} // namespace tally::ui
