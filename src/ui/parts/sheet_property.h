#pragma once

class QWidget;

namespace tally::ui {

/// Sets a property by which the style sheet tells states of a widget apart.
/// \return whether it was another before
bool set_sheet_property(QWidget &widget, const char *name, bool value);

} // namespace tally::ui
