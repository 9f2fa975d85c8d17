#pragma once

#include <QString>

namespace tally::ui {

/// What stands where there is no value.
inline const QString no_value = QStringLiteral("—");

/// A name, or what stands where it is unknown.
QString name_text(const QString &name);

/// Hours and minutes, minutes and seconds, or seconds; `no_value` for less than one.
/// \param seconds the fraction is cut off
QString duration_text(double seconds);

} // namespace tally::ui
