#include "ui/field/kill_points.h"

#include "ui/parts/value_texts.h"

#include <QtNumeric>

#include <limits>

namespace tally::ui {

Outcome outcome_of(qint64 mine, qint64 theirs)
{
    if (mine == theirs)
        return Outcome::Draw;
    return mine > theirs ? Outcome::Win : Outcome::Loss;
}

QString kill_point_ratio(qint64 mine, qint64 theirs)
{
    if (theirs < 1)
        return no_value;
    return QString::number(static_cast<double>(mine) / static_cast<double>(theirs), 'f', 2);
}

qint64 sum_of(qint64 one, qint64 other)
{
    using Limits = std::numeric_limits<qint64>;
    qint64 sum = 0;
    if (!qAddOverflow(one, other, &sum))
        return sum;
    return one < 0 ? Limits::min() : Limits::max();
}

} // namespace tally::ui
