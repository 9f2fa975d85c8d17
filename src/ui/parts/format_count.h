#pragma once

#include <QString>

namespace tally::ui {

/// A whole number in groups of three by the locale, a blank where the locale puts a comma.
QString format_count(qint64 count);

} // namespace tally::ui
