#pragma once

namespace tally::ui {

/// What follows the theme's sheet: readable colours for states in which that one leaves light on
/// light, arrows and rings that make a control look like one, and a border for the focus. It holds
/// the same placeholders. An arrow is a wedge of a conical gradient, with its tip in the middle of
/// a side: that is sharp at every scale and needs no picture. An item of a list has a background in
/// every state, because only then does its padding count in every state.
const char *theme_additions();

} // namespace tally::ui
