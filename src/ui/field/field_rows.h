#pragma once

#include "ui/field/field_attack.h"
#include "ui/field/tree_columns.h"

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace tally::ui {

/// One row of the tree: a tour, a report of it, an attack of that, or the line that says that there
/// is nothing.
struct FieldRow {
    QString key; ///< tells the row apart from all others of the tree, also after a refresh
    std::array<QString, tree_column_count> texts = {};
    std::optional<std::size_t> attack = {}; ///< where it stands in the list of attacks
    bool is_unfolded = false;               ///< when it comes in
    std::vector<FieldRow> below = {};

    QString &text(TreeColumn column) { return texts.at(column); }
};

/// Tours, their reports and their attacks, each in the order in which the attacks name them first.
std::vector<FieldRow> field_rows(const std::vector<FieldAttack> &attacks);

/// The enemy's name, or what else is known of him.
QString enemy_text(const FieldAttack &attack);
QString outcome_text(Outcome outcome);

} // namespace tally::ui
