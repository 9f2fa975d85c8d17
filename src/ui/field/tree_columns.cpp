#include "ui/field/tree_columns.h"

#include <QStringList>

#include <algorithm>

namespace tally::ui {

QString arrangement_text(const ColumnArrangement &arrangement)
{
    QStringList columns;
    for (const int column : arrangement.order)
        columns << QStringLiteral("%1:%2").arg(column).arg(
            arrangement.widths.at(static_cast<std::size_t>(column)));
    return columns.join(u' ');
}

std::optional<ColumnArrangement> arrangement_in(QStringView text, int columns)
{
    constexpr int narrowest = 16;
    constexpr int widest = 4000;
    ColumnArrangement arrangement{{}, std::vector<int>(static_cast<std::size_t>(columns), 0)};
    for (const QStringView part : text.split(u' ')) {
        const auto colon = part.indexOf(u':');
        bool has_column = false;
        bool has_width = false;
        const int column = part.left(colon).toInt(&has_column);
        const int width = part.mid(colon + 1).toInt(&has_width);
        if (colon < 0 || !has_column || !has_width || column < 0 || column >= columns ||
            std::ranges::count(arrangement.order, column) > 0)
            return std::nullopt;
        arrangement.order.push_back(column);
        arrangement.widths[static_cast<std::size_t>(column)] = std::clamp(width, narrowest, widest);
    }
    const bool is_whole = arrangement.order.size() == arrangement.widths.size();
    return is_whole && arrangement.order.front() == 0 ? std::optional(arrangement) : std::nullopt;
}

} // namespace tally::ui
