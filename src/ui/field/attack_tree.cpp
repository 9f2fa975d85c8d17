#include "ui/field/attack_tree.h"

#include "ui/field/field_export.h"
#include "ui/parts/table_export.h"

#include <QAbstractItemModel>
#include <QBrush>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTreeWidgetItemIterator>

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

namespace tally::ui {
namespace {

/// Shows one row of the tree, which it does not copy: an item for each cell would be 13,000 texts.
class RowItem : public QTreeWidgetItem {
public:
    RowItem(const FieldRow &row, const std::vector<FieldAttack> &attacks)
        : row_(row), attack_(row.attack ? &attacks[*row.attack] : nullptr)
    {}

    const FieldRow &row() const { return row_; }

    QVariant data(int column, int role) const override
    {
        const auto place = static_cast<std::size_t>(column);
        switch (role) {
        case Qt::DisplayRole:
            return row_.texts.at(place);
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(tree_columns.at(place).alignment);
        case Qt::ForegroundRole:
            return attack_ ? colour(attack_->outcome()) : QVariant();
        case Qt::UserRole:
            if (attack_ && column == 0)
                return QVariantList{attack_->file_name, attack_->attack_id};
            return {};
        default:
            return {};
        }
    }

private:
    static QVariant colour(Outcome outcome)
    {
        switch (outcome) {
        case Outcome::Win:
            return QBrush(QColor(0x0c, 0xa6, 0x78));
        case Outcome::Loss:
            return QBrush(QColor(0xe0, 0x31, 0x31));
        case Outcome::Draw:
            break;
        }
        return {};
    }

    const FieldRow &row_;
    const FieldAttack *attack_; ///< null for a tour or report
};

const FieldRow &row_of(const QTreeWidgetItem *item)
{
    return static_cast<const RowItem *>(item)->row();
}

QTreeWidgetItem *new_item(const FieldRow &row, const std::vector<FieldAttack> &attacks)
{
    auto *item = new RowItem(row, attacks);
    QList<QTreeWidgetItem *> below;
    for (const FieldRow &child : row.below)
        below << new_item(child, attacks);
    item->addChildren(below);
    return item;
}

} // namespace

AttackTree::AttackTree(const QString &export_name, QWidget *parent) : QTreeWidget(parent)
{
    setColumnCount(static_cast<int>(tree_column_count));
    for (int column = 0; column < columnCount(); ++column) {
        const TreeColumnLook &look = tree_columns.at(static_cast<std::size_t>(column));
        headerItem()->setText(column, QString::fromUtf16(look.title));
        headerItem()->setTextAlignment(column, look.alignment);
    }
    header()->setSectionResizeMode(QHeaderView::Interactive);
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(true);
    // The narrow columns have no room for the theme's padding beside their titles.
    setStyleSheet(QStringLiteral("QTreeWidget::item { padding: 2px 0; } "
                                 "QHeaderView::section { padding: 6px 1px; }"));
    setAlternatingRowColors(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setExpandsOnDoubleClick(false);
    offer_copy_and_export(this, export_name, [this](ExportedRows rows) {
        return attack_table(attacks_, rows == ExportedRows::Selected ? attacks_in(selectedItems())
                                                                     : all_attacks());
    });
}

void AttackTree::keyPressEvent(QKeyEvent *event)
{
    const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    QTreeWidgetItem *item = currentItem();
    if (!is_enter || !item)
        return QTreeWidget::keyPressEvent(event);
    if (item->childCount() > 0)
        item->setExpanded(!item->isExpanded());
    else
        Q_EMIT attackEntered(item, currentColumn());
}

std::vector<std::size_t> AttackTree::attacks_in(QList<QTreeWidgetItem *> items) const
{
    std::set<std::size_t> attacks;
    while (!items.isEmpty()) {
        const QTreeWidgetItem *item = items.takeLast();
        if (row_of(item).attack)
            attacks.insert(*row_of(item).attack);
        for (int child = 0; child < item->childCount(); ++child)
            items << item->child(child);
    }
    return {attacks.begin(), attacks.end()};
}

std::vector<std::size_t> AttackTree::all_attacks() const
{
    std::vector<std::size_t> all(attacks_.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    return all;
}

void AttackTree::show_attacks(std::vector<FieldAttack> attacks, std::vector<FieldRow> rows,
                              Place place)
{
    if (place == Place::Kept && attacks == attacks_ && !rows_.empty())
        return;
    const Position before = place == Place::Kept ? position() : Position();
    clear();
    attacks_ = std::move(attacks);
    rows_ = std::move(rows);
    build(before.unfolded);
    go_back(before);
}

void AttackTree::build(const QHash<QString, bool> &unfolded)
{
    QList<QTreeWidgetItem *> tours;
    for (const FieldRow &tour : rows_)
        tours << new_item(tour, attacks_);
    addTopLevelItems(tours);
    const auto unfold = [&unfolded](QTreeWidgetItem *item) {
        const FieldRow &row = row_of(item);
        if (unfolded.value(row.key, row.is_unfolded))
            item->setExpanded(true);
    };
    for (QTreeWidgetItem *tour : tours) {
        unfold(tour);
        for (int report = 0; report < tour->childCount(); ++report)
            unfold(tour->child(report));
    }
}

AttackTree::Position AttackTree::position() const
{
    Position position;
    for (QTreeWidgetItemIterator item(const_cast<AttackTree *>(this),
                                      QTreeWidgetItemIterator::HasChildren);
         *item; ++item)
        position.unfolded.insert(row_of(*item).key, (*item)->isExpanded());
    for (const QTreeWidgetItem *item : selectedItems())
        position.selected.insert(row_of(item).key);
    if (currentItem())
        position.current = row_of(currentItem()).key;
    position.left = horizontalScrollBar()->value();
    if (verticalScrollBar()->value() == 0)
        return position;
    const int bottom = viewport()->height();
    for (const QTreeWidgetItem *item = itemAt(0, 0); item && visualItemRect(item).top() < bottom;
         item = itemBelow(item))
        position.in_view << row_of(item).key;
    return position;
}

void AttackTree::go_back(const Position &position)
{
    QHash<QString, QTreeWidgetItem *> items;
    for (QTreeWidgetItemIterator item(this); *item; ++item)
        items.insert(row_of(*item).key, *item);
    QItemSelection selected;
    for (const QString &key : position.selected) {
        if (const QTreeWidgetItem *item = items.value(key)) {
            const QModelIndex index = indexFromItem(item);
            selected.select(index, index);
        }
    }
    // A current row in a folded report would unfold it.
    setAutoScroll(false);
    if (QTreeWidgetItem *current =
            position.current.isEmpty() ? nullptr : items.value(position.current))
        selectionModel()->setCurrentIndex(indexFromItem(current), QItemSelectionModel::NoUpdate);
    selectionModel()->select(selected, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    setAutoScroll(true);
    const auto still_there = std::ranges::find_if(
        position.in_view, [&items](const QString &key) { return items.contains(key); });
    if (still_there != position.in_view.end())
        scrollToItem(items.value(*still_there), QAbstractItemView::PositionAtTop);
    else
        scrollToTop();
    horizontalScrollBar()->setValue(position.left);
}

} // namespace tally::ui
