#pragma once

#include "data/store/records.h"

#include <QAbstractTableModel>
#include <QString>

#include <vector>

namespace tally::ui {

/// Sums of loot, one item a row, in the order they were given.
class LootTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Item, Quantity, TotalValue, Battles, DropRate, ColumnCount };
    /// Of `DropRate`: the rate in per cent as a double, if there were rounds.
    static constexpr int drop_rate_role = Qt::UserRole + 1;

    explicit LootTableModel(QString icon_dir, QObject *parent = nullptr);

    /// \param total_rounds what the drop rate is a share of
    void set_rows(std::vector<data::LootStat> rows, int total_rounds);
    bool has_rows(const std::vector<data::LootStat> &rows, int total_rounds) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QString icon_dir_;
    std::vector<data::LootStat> rows_;
    int total_rounds_ = 0;
};

} // namespace tally::ui
