#include "ui/parts/day_buttons.h"

#include <QPushButton>

namespace tally::ui {
namespace {

QPushButton *new_day_button(const QString &sign, const QString &tool_tip, const QString &moment)
{
    constexpr int width = 28;
    auto *button = new QPushButton(sign);
    button->setFixedWidth(width);
    button->setStyleSheet(QStringLiteral("padding: 2px 4px; font-weight: bold;"));
    button->setToolTip(tool_tip);
    button->setAccessibleName(QStringLiteral("%1: %2").arg(moment, tool_tip));
    return button;
}

} // namespace

DayButtons new_day_buttons(const QString &moment)
{
    return {new_day_button(QStringLiteral("−"), QStringLiteral("Previous day (-1)"), moment),
            new_day_button(QStringLiteral("+"), QStringLiteral("Next day (+1)"), moment)};
}

} // namespace tally::ui
