#pragma once

#include "ui/items/item_rows.h"
#include "ui/items/picture_watch.h"

#include <QSet>
#include <QTableView>

namespace tally::ui {

class ItemRowModel;

/// What a table of reports is called, and how its columns behave.
struct ItemRowTableLook {
    QString name;        ///< for those who cannot see it
    QString export_name; ///< of the file for its rows, without ending
    QStringList headers;
    /// The last column shows loot, and rows are as high as its tiles. It takes the room left over,
    /// and where that is not enough, the table can be scrolled to the side.
    bool has_strips = true;
    int stretching = -1; ///< the column that takes the room left over; below 0 the last one
    QAbstractItemView::SelectionMode selection = QAbstractItemView::ExtendedSelection;
};

/// A table of reports, a whole row being one of them. New rows leave the selected ones selected and
/// the shown ones where they are; only who looks at the top sees new ones come in there.
class ItemRowTable : public QTableView {
    Q_OBJECT

public:
    ItemRowTable(const ItemRowTableLook &look, const QString &icon_dir, QWidget *parent = nullptr);

    /// Touches nothing if the rows are those that are shown, but paints strips anew whose pictures
    /// may be others now.
    void set_rows(std::vector<ItemRow> rows);

    const std::vector<ItemRow> &rows() const;
    /// The key of a row; empty for an index without one.
    QString key_of(const QModelIndex &index) const;
    /// Selects this row alone. \return whether there is one
    bool select_key(const QString &key);

Q_SIGNALS:
    /// By a double click or by the Enter key; `activated` on some desktops is a single click.
    void rowOpened(const QModelIndex &index);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void updateGeometries() override;

private:
    struct Place {
        QSet<QString> selected;
        QString current;
        QString top;  ///< empty if it is the first one
        int left = 0; ///< of the horizontal bar
    };
    Place place() const;
    void go_back(const Place &place);
    QModelIndex index_of(const QString &key) const;

    ItemRowModel *model_;
    PictureWatch pictures_;
    bool has_strips_;
};

} // namespace tally::ui
