#pragma once

#include <QString>

class QPushButton;

namespace tally::ui {

/// The buttons around a date, without a parent.
struct DayButtons {
    QPushButton *previous;
    QPushButton *next;
};

/// \param moment what the date is called, for those who cannot see where the buttons stand
DayButtons new_day_buttons(const QString &moment);

} // namespace tally::ui
