#pragma once

#include "data/store/chain_records.h"

#include <QString>

#include <array>
#include <optional>

namespace tally::ui {

/// How a best chain went and when, behind the name of the choice.
QString best_chain_line(const QString &label, const std::optional<data::BestChain> &best);

/// Bars for the hours of a day and the axis under them.
/// \param chains by hour
QString sparkline(const std::array<int, 24> &chains);

} // namespace tally::ui
