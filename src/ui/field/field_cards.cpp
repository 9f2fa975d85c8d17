#include "ui/field/field_cards.h"

#include "ui/field/kill_points.h"
#include "ui/parts/format_count.h"
#include "ui/parts/value_texts.h"

namespace tally::ui {

FieldCardTexts field_cards(const data::FieldSummary &summary)
{
    return {
        format_count(summary.fights),
        format_count(summary.attacks),
        format_count(summary.enemies),
        format_count(summary.kvk),
        summary.fights == 0 ? no_value
                            : QStringLiteral("%1%").arg(QString::number(summary.win_rate, 'f', 1)),
        kill_point_ratio(summary.my_kp, summary.enemy_kp),
        format_count(summary.my_kp),
        format_count(summary.enemy_kp),
    };
}

} // namespace tally::ui
