#include "ui/items/item_row_model.h"

#include "ui/items/loot_strip.h"
#include "ui/parts/table_export.h"

#include <utility>

namespace tally::ui {
namespace {

constexpr int tile_size = 72;
constexpr int tile_gap = 3;
constexpr int strip_margin = 8;
constexpr int row_height = 80;

QSize strip_size(std::size_t items)
{
    return {static_cast<int>(items) * (tile_size + tile_gap) - tile_gap + strip_margin, row_height};
}

QVariant cell_data(const RowCell &cell, int role)
{
    switch (role) {
    case Qt::DisplayRole:
        return cell.text;
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(cell.alignment);
    case Qt::UserRole:
        return cell.value;
    case export_role:
        return cell.exported;
    default:
        return {};
    }
}

} // namespace

ItemRowModel::ItemRowModel(QStringList headers, QString icon_dir, QObject *parent)
    : QAbstractTableModel(parent), headers_(std::move(headers)), icon_dir_(std::move(icon_dir))
{}

void ItemRowModel::set_rows(std::vector<ItemRow> rows)
{
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

int ItemRowModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ItemRowModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(headers_.size());
}

QVariant ItemRowModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ItemRow &row = rows_[static_cast<std::size_t>(index.row())];
    const auto column = static_cast<std::size_t>(index.column());
    return column < row.cells.size() ? cell_data(row.cells[column], role) : loot_data(row, role);
}

QVariant ItemRowModel::loot_data(const ItemRow &row, int role) const
{
    if (row.loot.empty())
        return {};
    switch (role) {
    case Qt::DecorationRole:
        return render_loot_strip(row.loot, icon_dir_, tile_size, tile_gap);
    case Qt::SizeHintRole:
        return strip_size(row.loot.size());
    case Qt::ToolTipRole:
        return loot_words(row.loot, QStringLiteral("\n"));
    case Qt::AccessibleTextRole:
    case export_role:
        return loot_words(row.loot, QStringLiteral("; "));
    default:
        return {};
    }
}

QVariant ItemRowModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= headers_.size())
        return {};
    // In the middle of a column of strips it would be out of sight.
    if (role == Qt::TextAlignmentRole && !rows_.empty() &&
        static_cast<std::size_t>(section) >= rows_.front().cells.size())
        return QVariant::fromValue(Qt::AlignLeft | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? QVariant(headers_.at(section)) : QVariant();
}

} // namespace tally::ui
