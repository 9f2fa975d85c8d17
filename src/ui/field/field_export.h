#pragma once

#include "ui/field/field_attack.h"

#include <memory>
#include <vector>

class QAbstractItemModel;

namespace tally::ui {

/// Attacks as a flat table for other programs: with their tour and report, bare numbers, and times
/// as ISO 8601 in UTC.
/// \param which of the attacks, in the order of the rows
std::unique_ptr<QAbstractItemModel> attack_table(const std::vector<FieldAttack> &attacks,
                                                 const std::vector<std::size_t> &which);

} // namespace tally::ui
