#pragma once

#include <QString>

namespace tally::ui {

/// Who of two sides got more kill points has won.
enum class Outcome { Draw, Win, Loss };

Outcome outcome_of(qint64 mine, qint64 theirs);

/// Own to enemy kill points with two decimals; an em dash if the enemy has none.
QString kill_point_ratio(qint64 mine, qint64 theirs);

/// A sum that stays at the largest or smallest number there is.
qint64 sum_of(qint64 one, qint64 other);

} // namespace tally::ui
