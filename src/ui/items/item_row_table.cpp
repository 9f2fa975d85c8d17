#include "ui/items/item_row_table.h"

#include "ui/items/item_row_model.h"
#include "ui/parts/table_export.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

namespace tally::ui {
namespace {

constexpr int strip_row_height = 80;
constexpr QSize strip_icon_size(2000, 72);
/// Of a long table the first rows tell how wide its columns have to be.
constexpr int measured_rows = 60;

} // namespace

ItemRowTable::ItemRowTable(const ItemRowTableLook &look, const QString &icon_dir, QWidget *parent)
    : QTableView(parent), model_(new ItemRowModel(look.headers, icon_dir, this)),
      has_strips_(look.has_strips)
{
    setModel(model_);
    setAccessibleName(look.name);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(look.selection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->hide();
    if (look.has_strips) {
        setIconSize(strip_icon_size);
        verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        verticalHeader()->setDefaultSectionSize(strip_row_height);
    }
    QHeaderView *header = horizontalHeader();
    header->setResizeContentsPrecision(measured_rows);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    if (look.stretching < 0)
        header->setStretchLastSection(true);
    else
        header->setSectionResizeMode(look.stretching, QHeaderView::Stretch);
    header->setHighlightSections(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    offer_copy_and_export(this, look.export_name);
    connect(this, &QTableView::doubleClicked, this, &ItemRowTable::rowOpened);
}

void ItemRowTable::keyPressEvent(QKeyEvent *event)
{
    const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!is_enter || !currentIndex().isValid())
        return QTableView::keyPressEvent(event);
    // Which the table would hand on, and a dialog around it would close.
    Q_EMIT activated(currentIndex());
    Q_EMIT rowOpened(currentIndex());
}

void ItemRowTable::updateGeometries()
{
    QTableView::updateGeometries();
    QHeaderView *header = horizontalHeader();
    const int last = header->count() - 1;
    if (!has_strips_ || last < 0)
        return;
    // A stretching column would cut off strips that are wider than the room left over.
    const int needed = header->sectionPosition(last) + sizeHintForColumn(last);
    const bool has_room = needed <= viewport()->width();
    if (header->stretchLastSection() != has_room)
        header->setStretchLastSection(has_room);
}

const std::vector<ItemRow> &ItemRowTable::rows() const
{
    return model_->rows();
}

void ItemRowTable::set_rows(std::vector<ItemRow> rows)
{
    const bool has_new_pictures = pictures_.take_news() && has_strips_;
    if (rows == model_->rows()) {
        if (has_new_pictures)
            viewport()->update();
        return;
    }
    const Place before = place();
    model_->set_rows(std::move(rows));
    go_back(before);
}

QString ItemRowTable::key_of(const QModelIndex &index) const
{
    const auto row = static_cast<std::size_t>(index.row());
    return index.isValid() && row < rows().size() ? rows()[row].key : QString();
}

QModelIndex ItemRowTable::index_of(const QString &key) const
{
    for (std::size_t row = 0; row < rows().size(); ++row) {
        if (rows()[row].key == key)
            return model_->index(static_cast<int>(row), 0);
    }
    return {};
}

bool ItemRowTable::select_key(const QString &key)
{
    const QModelIndex index = index_of(key);
    if (index.isValid())
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                     QItemSelectionModel::Rows);
    return index.isValid();
}

ItemRowTable::Place ItemRowTable::place() const
{
    Place place;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        place.selected.insert(key_of(index));
    place.current = key_of(currentIndex());
    if (verticalScrollBar()->value() > 0)
        place.top = key_of(indexAt({0, 0}));
    place.left = horizontalScrollBar()->value();
    return place;
}

void ItemRowTable::go_back(const Place &place)
{
    QItemSelection selected;
    for (std::size_t row = 0; !place.selected.isEmpty() && row < rows().size(); ++row) {
        const QModelIndex index = model_->index(static_cast<int>(row), 0);
        if (place.selected.contains(rows()[row].key))
            selected.select(index, index);
    }
    selectionModel()->setCurrentIndex(place.current.isEmpty() ? QModelIndex()
                                                              : index_of(place.current),
                                      QItemSelectionModel::NoUpdate);
    selectionModel()->select(selected, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    // A current row that is out of sight has scrolled to itself.
    const QModelIndex top = place.top.isEmpty() ? model_->index(0, 0) : index_of(place.top);
    if (top.isValid())
        scrollTo(top, QAbstractItemView::PositionAtTop);
    horizontalScrollBar()->setValue(place.left);
}

} // namespace tally::ui
