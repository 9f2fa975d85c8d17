#pragma once

#include <QList>
#include <QStringList>

namespace tally::services {

/// A list of hours as a user writes it.
struct NotifyHours {
    QList<int> hours;    ///< 1 to 239, in the order of the text, repeats and all
    QStringList ignored; ///< what is no such number

    bool operator==(const NotifyHours &) const = default;
};

/// Reads numbers between blanks, commas and semicolons.
NotifyHours parse_notify_hours(const QString &text);

} // namespace tally::services
