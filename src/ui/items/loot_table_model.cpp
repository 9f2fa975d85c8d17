#include "ui/items/loot_table_model.h"

#include "data/values/numbers.h"
#include "ui/items/item_pictures.h"
#include "ui/parts/format_count.h"
#include "ui/parts/steady_icon.h"
#include "ui/parts/table_export.h"

#include <algorithm>
#include <utility>

namespace tally::ui {
namespace {

constexpr int icon_size = 28;

constexpr const char16_t *headers[LootTableModel::ColumnCount] = {
    u"Item", u"Qty", u"Total value", u"In how many battles", u"Drop rate"};

bool is_number_column(int column)
{
    return column >= LootTableModel::Quantity && column <= LootTableModel::Battles;
}

QString item_text(const data::LootStat &row)
{
    if (!row.name.isEmpty())
        return row.name;
    return QStringLiteral("Type=%1/Sub=%2")
        .arg(data::to_int(row.item_type).value_or(0))
        .arg(data::to_int(row.item_subtype).value_or(0));
}

QString total_text(const data::LootStat &row)
{
    const QString total = format_count(row.total_value);
    if (row.unit != u"min")
        return total;
    const auto minutes = static_cast<double>(row.total_value);
    return QStringLiteral("%1 (%2 h / %3 d)")
        .arg(total, QString::number(minutes / 60, 'f', 1), QString::number(minutes / 1440, 'f', 1));
}

QVariant drop_rate(const data::LootStat &row, int total_rounds)
{
    return total_rounds > 0 ? 100.0 * row.battles / total_rounds : QVariant();
}

QString shown_text(const data::LootStat &row, int column, int total_rounds)
{
    switch (column) {
    case LootTableModel::Item:
        return QStringLiteral("  ") + item_text(row);
    case LootTableModel::Quantity:
        return format_count(row.pieces);
    case LootTableModel::TotalValue:
        return total_text(row);
    case LootTableModel::Battles:
        return format_count(row.battles);
    default:
        break;
    }
    const QVariant rate = drop_rate(row, total_rounds);
    return rate.isValid() ? QStringLiteral("%1%").arg(rate.toDouble(), 0, 'f', 1)
                          : QStringLiteral("N/A");
}

QVariant exported_value(const data::LootStat &row, int column, int total_rounds)
{
    switch (column) {
    case LootTableModel::Item:
        return item_text(row);
    case LootTableModel::Quantity:
        return row.pieces;
    case LootTableModel::TotalValue:
        return row.total_value;
    case LootTableModel::Battles:
        return row.battles;
    default:
        return drop_rate(row, total_rounds);
    }
}

QVariant icon_of(const data::LootStat &row, const QString &icon_dir)
{
    if (icon_dir.isEmpty() || item_icon(row.icon, icon_dir).isNull())
        return {};
    return QVariant(steady_icon(item_tile({.icon = row.icon,
                                           .unit = row.unit,
                                           .name = row.name,
                                           .unit_value = row.unit_value,
                                           .size = icon_size},
                                          icon_dir)));
}

} // namespace

LootTableModel::LootTableModel(QString icon_dir, QObject *parent)
    : QAbstractTableModel(parent), icon_dir_(std::move(icon_dir))
{}

void LootTableModel::set_rows(std::vector<data::LootStat> rows, int total_rounds)
{
    beginResetModel();
    rows_ = std::move(rows);
    total_rounds_ = std::max(total_rounds, 0);
    endResetModel();
}

bool LootTableModel::has_rows(const std::vector<data::LootStat> &rows, int total_rounds) const
{
    return rows == rows_ && std::max(total_rounds, 0) == total_rounds_;
}

int LootTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int LootTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant LootTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const data::LootStat &row = rows_[static_cast<size_t>(index.row())];
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return shown_text(row, column, total_rounds_);
    case Qt::DecorationRole:
        return column == Item ? icon_of(row, icon_dir_) : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((is_number_column(column) ? Qt::AlignRight : Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    case drop_rate_role:
        return column == DropRate ? drop_rate(row, total_rounds_) : QVariant();
    case export_role:
        return exported_value(row, column, total_rounds_);
    default:
        return {};
    }
}

QVariant LootTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return QString::fromUtf16(headers[section]);
    if (role == Qt::TextAlignmentRole && is_number_column(section))
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

} // namespace tally::ui
