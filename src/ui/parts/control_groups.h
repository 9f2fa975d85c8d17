#pragma once

#include <QString>

#include <initializer_list>

class QComboBox;
class QHBoxLayout;
class QLayout;
class QWidget;

namespace tally::ui {

/// Adds controls that stay together to a row that wraps. All groups of the row get one height, so
/// that what stands in one line is level. \return the group's own layout
QHBoxLayout *add_control_group(QLayout &row, std::initializer_list<QWidget *> controls,
                               int spacing);

/// A group of a label and an empty choice. \param label ends in a colon
QComboBox *add_choice_group(QLayout &row, const QString &label, int spacing);

/// For groups that were added to the row in another way.
void level_control_groups(QLayout &row);

} // namespace tally::ui
