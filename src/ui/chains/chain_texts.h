#pragma once

#include "data/store/chain_records.h"

#include <QString>

#include <array>
#include <optional>

namespace tally::ui {

/// What stands where there is no value.
inline const QString no_value = QStringLiteral("—");

/// Hours and minutes, minutes and seconds, or seconds; `no_value` for less than one.
/// \param seconds the fraction is cut off
QString duration_text(double seconds);

/// How a best chain went and when, behind the name of the choice.
QString best_chain_line(const QString &label, const std::optional<data::BestChain> &best);

/// Bars for the hours of a day and the axis under them.
/// \param chains by hour
QString sparkline(const std::array<int, 24> &chains);

} // namespace tally::ui
