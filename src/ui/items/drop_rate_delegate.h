#pragma once

#include <QStyledItemDelegate>

namespace tally::ui {

/// Paints the `LootTableModel::drop_rate_role` of an index as a bar from 0 to 100 per cent.
class DropRateDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace tally::ui
