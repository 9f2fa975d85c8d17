#include "ui/items/loot_table.h"

#include "ui/items/drop_rate_delegate.h"
#include "ui/items/loot_table_model.h"
#include "ui/parts/table_export.h"

#include <QScrollBar>

#include <utility>

namespace tally::ui {

LootTable::LootTable(const QString &icon_dir, const QString &export_name, const Columns &columns,
                     QWidget *parent)
    : QTableView(parent), model_(new LootTableModel(icon_dir, this))
{
    setModel(model_);
    setAccessibleName(QStringLiteral("Loot"));
    setAlternatingRowColors(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setIconSize(QSize(28, 28));
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(34);
    setItemDelegateForColumn(LootTableModel::DropRate, new DropRateDelegate(this));
    QHeaderView *header = horizontalHeader();
    header->setSectionResizeMode(columns.mode);
    header->setStretchLastSection(true);
    for (std::size_t column = 0; column < columns.widths.size(); ++column)
        header->resizeSection(static_cast<int>(column), columns.widths.at(column));
    constexpr int least_for_a_rate = 70;
    header->resizeSection(LootTableModel::DropRate, least_for_a_rate);
    offer_copy_and_export(this, export_name);
}

void LootTable::show_rows(std::vector<data::LootStat> rows, int total_rounds)
{
    const bool has_new_pictures = pictures_.take_news();
    if (model_->has_rows(rows, total_rounds)) {
        if (has_new_pictures)
            viewport()->update();
        return;
    }
    QStringList selected_items;
    for (const QModelIndex &row : selectionModel()->selectedRows())
        selected_items << row.data().toString();
    const QString current_item = currentIndex().siblingAtColumn(0).data().toString();
    const int scrolled = verticalScrollBar()->value();

    model_->set_rows(std::move(rows), total_rounds);

    QItemSelection selected;
    QModelIndex current;
    for (int row = 0; row < model_->rowCount(); ++row) {
        const QModelIndex index = model_->index(row, 0);
        const QString item = index.data().toString();
        if (selected_items.contains(item))
            selected.select(index, index);
        if (item == current_item)
            current = index;
    }
    setAutoScroll(false); // to the current row
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    setAutoScroll(true);
    selectionModel()->select(selected, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    verticalScrollBar()->setValue(scrolled);
}

} // namespace tally::ui
