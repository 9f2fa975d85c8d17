#pragma once

#include "ui/items/item_rows.h"

#include <QAbstractTableModel>
#include <QSize>
#include <QStringList>

namespace tally::ui {

/// Reports, one a row, with their loot as a strip of tiles in the last column, if the table has
/// such a column. A strip is painted when it is asked for, which views do for the rows they show.
class ItemRowModel : public QAbstractTableModel {
    Q_OBJECT

public:
    ItemRowModel(QStringList headers, QString icon_dir, QObject *parent = nullptr);

    void set_rows(std::vector<ItemRow> rows);
    const std::vector<ItemRow> &rows() const { return rows_; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QVariant loot_data(const ItemRow &row, int role) const;

    QStringList headers_;
    QString icon_dir_;
    std::vector<ItemRow> rows_;
};

} // namespace tally::ui
