#pragma once

#include "data/store/records.h"
#include "ui/items/picture_watch.h"

#include <QHeaderView>
#include <QString>
#include <QTableView>

#include <array>
#include <vector>

namespace tally::ui {

class LootTableModel;

/// The table of a `LootTableModel`, whose rows can be copied and exported. New rows leave the user
/// where he is: with the items that he selected, at the row of the keyboard and the place
/// that he scrolled to.
class LootTable : public QTableView {
    Q_OBJECT

public:
    /// How the first four columns are laid out; the drop rate takes what is left.
    struct Columns {
        std::array<int, 4> widths;
        QHeaderView::ResizeMode mode;
    };

    LootTable(const QString &icon_dir, const QString &export_name, const Columns &columns,
              QWidget *parent = nullptr);

    /// Touches nothing but pictures if that is what it shows.
    /// \param total_rounds what the drop rate is a share of
    void show_rows(std::vector<data::LootStat> rows, int total_rounds);

private:
    LootTableModel *model_;
    PictureWatch pictures_;
};

} // namespace tally::ui
