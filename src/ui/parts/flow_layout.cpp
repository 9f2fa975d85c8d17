#include "ui/parts/flow_layout.h"

#include <QApplication>
#include <QWidget>

#include <algorithm>

namespace tally::ui {

FlowLayout::FlowLayout(QWidget *parent, int margin, int h_spacing, int v_spacing)
    : QLayout(parent), h_spacing_(h_spacing), v_spacing_(v_spacing)
{
    if (margin >= 0)
        setContentsMargins(margin, margin, margin, margin);
}

FlowLayout::~FlowLayout()
{
    qDeleteAll(items_);
}

void FlowLayout::addItem(QLayoutItem *item)
{
    items_.append(item);
}

Qt::Orientations FlowLayout::expandingDirections() const
{
    return {};
}

bool FlowLayout::hasHeightForWidth() const
{
    return true;
}

int FlowLayout::heightForWidth(int width) const
{
    return lay_out(QRect(0, 0, width, 0), Pass::Measure);
}

int FlowLayout::count() const
{
    return static_cast<int>(items_.size());
}

QLayoutItem *FlowLayout::itemAt(int index) const
{
    return items_.value(index);
}

QLayoutItem *FlowLayout::takeAt(int index)
{
    return index >= 0 && index < count() ? items_.takeAt(index) : nullptr;
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem *item : items_)
        size = size.expandedTo(item->minimumSize());
    return size.grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    lay_out(rect, Pass::Place);
}

QSize FlowLayout::sizeHint() const
{
    return minimumSize();
}

int FlowLayout::lay_out(const QRect &rect, Pass pass) const
{
    const QRect inner = rect.marginsRemoved(contentsMargins());
    const int right_edge = inner.left() + inner.width();
    QPoint at = inner.topLeft();
    int row_height = 0;
    qsizetype row_start = 0;
    int row_end = at.x();
    for (qsizetype i = 0; i < items_.size(); ++i) {
        QLayoutItem *item = items_[i];
        const QSize size = item->sizeHint();
        if (at.x() + size.width() > right_edge && row_height > 0) {
            if (pass == Pass::Place)
                centre(row_start, i, right_edge - row_end);
            at = {inner.left(), at.y() + row_height + space_after(*item, Qt::Vertical)};
            row_height = 0;
            row_start = i;
        }
        if (pass == Pass::Place)
            item->setGeometry(QRect(at, size));
        row_end = at.x() + size.width();
        at.rx() = row_end + space_after(*item, Qt::Horizontal);
        row_height = std::max(row_height, size.height());
    }
    if (pass == Pass::Place)
        centre(row_start, items_.size(), right_edge - row_end);
    return at.y() + row_height - rect.top() + contentsMargins().bottom();
}

void FlowLayout::centre(qsizetype first, qsizetype end, int free_width) const
{
    if (!(alignment() & Qt::AlignHCenter) || free_width <= 0)
        return;
    for (qsizetype i = first; i < end; ++i)
        items_[i]->setGeometry(items_[i]->geometry().translated(free_width / 2, 0));
}

int FlowLayout::space_after(const QLayoutItem &item, Qt::Orientation direction) const
{
    const bool horizontal = direction == Qt::Horizontal;
    int space = horizontal ? h_spacing_ : v_spacing_;
    if (space < 0)
        space = inherited_spacing(horizontal ? QStyle::PM_LayoutHorizontalSpacing
                                             : QStyle::PM_LayoutVerticalSpacing);
    if (space >= 0)
        return space;
    const QWidget *widget = item.widget();
    const QStyle *style = widget ? widget->style() : QApplication::style();
    return std::max(
        style->layoutSpacing(QSizePolicy::PushButton, QSizePolicy::PushButton, direction), 0);
}

int FlowLayout::inherited_spacing(QStyle::PixelMetric metric) const
{
    if (const auto *layout = qobject_cast<const QLayout *>(parent()))
        return layout->spacing();
    if (const auto *widget = qobject_cast<const QWidget *>(parent()))
        return widget->style()->pixelMetric(metric, nullptr, widget);
    return -1;
}

} // namespace tally::ui
