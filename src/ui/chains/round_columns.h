#pragma once

namespace tally::ui {

/// Widths in pixels, shared by the rows and their headers. The rewards take what is left.
namespace round_columns {
constexpr int number = 70;
constexpr int status = 100;
constexpr int target = 240;
constexpr int tag = 120;
constexpr int damage = 140;
constexpr int spacing = 8;
} // namespace round_columns

} // namespace tally::ui
