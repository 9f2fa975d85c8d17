#include "ui/parts/card_layout.h"

#include <algorithm>

namespace tally::ui {
namespace {

int divided_up(int number, int by)
{
    return (number + by - 1) / by;
}

} // namespace

CardLayout::CardLayout(int spacing, QWidget *parent)
    : FlowLayout(parent, -1, spacing, spacing), spacing_(spacing)
{}

QSize CardLayout::largest_item() const
{
    QSize size;
    for (int i = 0; i < count(); ++i)
        size = size.expandedTo(itemAt(i)->sizeHint());
    return size;
}

int CardLayout::width_of_one_row() const
{
    int width = -spacing_;
    for (int i = 0; i < count(); ++i)
        width += itemAt(i)->sizeHint().width() + spacing_;
    return width;
}

int CardLayout::columns_in(int width) const
{
    if (width >= width_of_one_row())
        return count();
    const int fitting = (width + spacing_) / (largest_item().width() + spacing_);
    const int rows = std::max(2, divided_up(count(), std::max(1, fitting)));
    return divided_up(count(), rows);
}

std::vector<int> CardLayout::shares(int width) const
{
    const auto items = static_cast<std::size_t>(count());
    int room = width - (count() - 1) * spacing_;
    std::vector<int> shares(items, 0);
    int sharing = count();
    // Who needs more than an equal share leaves less to the others, who may then need more too.
    for (bool settled = false; !settled && sharing > 0;) {
        settled = true;
        for (std::size_t i = 0; i < items && sharing > 0; ++i) {
            const int needed = itemAt(static_cast<int>(i))->sizeHint().width();
            if (shares[i] > 0 || needed * sharing <= room)
                continue;
            shares[i] = needed;
            room -= needed;
            --sharing;
            settled = false;
        }
    }
    for (int &share : shares) {
        if (share > 0)
            continue;
        share = room / sharing;
        room -= share;
        --sharing;
    }
    return shares;
}

int CardLayout::heightForWidth(int width) const
{
    if (count() == 0)
        return 0;
    const QMargins margins = contentsMargins();
    const int rows = divided_up(count(), columns_in(width - margins.left() - margins.right()));
    return rows * (largest_item().height() + spacing_) - spacing_ + margins.top() +
           margins.bottom();
}

void CardLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    const auto items = static_cast<std::size_t>(count());
    if (items == 0)
        return;
    const QRect inner = rect.marginsRemoved(contentsMargins());
    const int columns = columns_in(inner.width());
    const int height = largest_item().height();
    const int equal = (inner.width() - (columns - 1) * spacing_) / columns;
    const std::vector<int> widths =
        columns == count() ? shares(inner.width()) : std::vector<int>(items, equal);
    QPoint at = inner.topLeft();
    for (int i = 0; i < count(); ++i) {
        if (i > 0 && i % columns == 0)
            at = {inner.left(), at.y() + height + spacing_};
        const int width = widths[static_cast<std::size_t>(i)];
        itemAt(i)->setGeometry({at, QSize(width, height)});
        at.rx() += width + spacing_;
    }
}

QSize CardLayout::sizeHint() const
{
    return QSize(width_of_one_row(), largest_item().height()).grownBy(contentsMargins());
}

} // namespace tally::ui
