#include "ui/parts/table_export.h"

#include "platform/files/whole_file.h"
#include "ui/parts/export_field.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHeaderView>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTableView>
#include <QTreeView>

#include <map>
#include <numeric>
#include <vector>

namespace tally::ui {
namespace {

using Columns = std::vector<int>;
using FieldOf = QString (*)(const QVariant &);

constexpr QLatin1StringView csv_line_end("\r\n");

const QHeaderView *header_of(const QAbstractItemView &view)
{
    if (const auto *table = qobject_cast<const QTableView *>(&view))
        return table->horizontalHeader();
    if (const auto *tree = qobject_cast<const QTreeView *>(&view))
        return tree->header();
    return nullptr;
}

Columns all_columns(const QAbstractItemModel &model)
{
    Columns columns(static_cast<size_t>(model.columnCount()));
    std::iota(columns.begin(), columns.end(), 0);
    return columns;
}

/// In the order in which the view shows them.
Columns shown_columns(const QAbstractItemView &view)
{
    const QHeaderView *header = header_of(view);
    if (!header) {
        const auto *list = qobject_cast<const QListView *>(&view);
        return {list ? list->modelColumn() : 0};
    }
    Columns columns;
    for (int place = 0; place < header->count(); ++place) {
        const int column = header->logicalIndex(place);
        if (!header->isSectionHidden(column))
            columns.push_back(column);
    }
    return columns;
}

bool is_hidden(const QAbstractItemView &view, const QModelIndex &row)
{
    if (const auto *table = qobject_cast<const QTableView *>(&view))
        return table->isRowHidden(row.row());
    if (const auto *tree = qobject_cast<const QTreeView *>(&view))
        return tree->isRowHidden(row.row(), row.parent());
    return false;
}

/// Row numbers from the top level down: their order is that of the rows on the screen.
std::vector<int> road_to(QModelIndex row)
{
    std::vector<int> road;
    for (; row.isValid(); row = row.parent())
        road.insert(road.begin(), row.row());
    return road;
}

/// A cell of each selected row, on whatever level, from top to bottom.
std::vector<QModelIndex> selected_rows(const QAbstractItemView &view)
{
    std::map<std::vector<int>, QModelIndex> rows;
    for (const QItemSelectionRange &range : view.selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            const QModelIndex cell = range.model()->index(row, range.left(), range.parent());
            if (!is_hidden(view, cell))
                rows.emplace(road_to(cell), cell);
        }
    }
    std::vector<QModelIndex> sorted;
    sorted.reserve(rows.size());
    for (const auto &[road, cell] : rows)
        sorted.push_back(cell);
    return sorted;
}

QVariant exported_value(const QModelIndex &cell)
{
    const QVariant value = cell.data(export_role);
    return value.isValid() ? value : cell.data();
}

QString header_line(const QAbstractItemModel &model, const Columns &columns, QChar separator,
                    FieldOf field)
{
    QStringList fields;
    for (const int column : columns)
        fields << field(model.headerData(column, Qt::Horizontal));
    return fields.join(separator);
}

QString row_line(const QModelIndex &row, const Columns &columns, QChar separator, FieldOf field)
{
    QStringList fields;
    for (const int column : columns)
        fields << field(exported_value(row.siblingAtColumn(column)));
    return fields.join(separator);
}

void append_csv_rows(QString &csv, const QAbstractItemModel &model, const Columns &columns,
                     const QModelIndex &parent)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex first = model.index(row, 0, parent);
        csv += row_line(first, columns, u',', csv_field) + csv_line_end;
        append_csv_rows(csv, model, columns, first);
    }
}

bool has_selection(const QAbstractItemView &view)
{
    return view.selectionModel() && view.selectionModel()->hasSelection();
}

QString tab_separated(const QAbstractItemModel &model)
{
    const Columns columns = all_columns(model);
    QString text = header_line(model, columns, u'\t', tab_field) + u'\n';
    for (int row = 0; row < model.rowCount(); ++row)
        text += row_line(model.index(row, 0), columns, u'\t', tab_field) + u'\n';
    return text;
}

void copy_to_clipboard(const QAbstractItemView &view, const TableOf &table_of)
{
    if (has_selection(view))
        QGuiApplication::clipboard()->setText(
            table_of ? tab_separated(*table_of(ExportedRows::Selected)) : copied_rows(view));
}

/// In the status bar of the next window that has one.
void tell_success(QWidget *view, const QString &path)
{
    constexpr int shown_ms = 8'000;
    for (QWidget *widget = view; widget; widget = widget->parentWidget()) {
        if (auto *bar = widget->findChild<QStatusBar *>({}, Qt::FindDirectChildrenOnly))
            return bar->showMessage(
                QStringLiteral("Exported to \"%1\".").arg(QDir::toNativeSeparators(path)),
                shown_ms);
    }
}

void tell_failure(QWidget *parent, const QString &path, const QString &reason)
{
    auto *box = new QMessageBox(
        QMessageBox::Warning, QStringLiteral("Export as CSV"),
        QStringLiteral("The rows could not be saved to \"%1\": %2.\nExport them again to another "
                       "folder or under another name.")
            .arg(QDir::toNativeSeparators(path), reason),
        QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void save_csv(QAbstractItemView *view, const QString &path, const TableOf &table_of)
{
    const QByteArray csv = csv_of(table_of ? *table_of(ExportedRows::All) : *view->model());
    if (const auto failure = platform::write_whole_file(path, csv))
        tell_failure(view, path, *failure);
    else
        tell_success(view, path);
}

void ask_where_to_save(QAbstractItemView *view, const QString &suggested_name,
                       const TableOf &table_of)
{
    if (!view->model())
        return;
    auto *dialog =
        new QFileDialog(view, QStringLiteral("Export as CSV"),
                        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
                        QStringLiteral("CSV files (*.csv)"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    dialog->selectFile(suggested_name + QStringLiteral(".csv"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QFileDialog::fileSelected, view,
                     [view, table_of](const QString &path) { save_csv(view, path, table_of); });
    dialog->open();
}

void show_menu(QAbstractItemView *view, QAction *copy, QPoint at)
{
    auto *menu = new QMenu(view);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(view->actions());
    copy->setEnabled(has_selection(*view));
    // A disabled action would swallow the shortcut of a later selection.
    QObject::connect(menu, &QMenu::aboutToHide, copy, [copy] { copy->setEnabled(true); });
    menu->popup(view->viewport()->mapToGlobal(at));
}

} // namespace

QString copied_rows(const QAbstractItemView &view)
{
    if (!has_selection(view))
        return {};
    const Columns columns = shown_columns(view);
    QString text;
    if (header_of(view))
        text = header_line(*view.model(), columns, u'\t', tab_field) + u'\n';
    for (const QModelIndex &row : selected_rows(view))
        text += row_line(row, columns, u'\t', tab_field) + u'\n';
    return text;
}

QByteArray csv_of(const QAbstractItemModel &model)
{
    const Columns columns = all_columns(model);
    QString csv =
        QChar::ByteOrderMark + header_line(model, columns, u',', csv_field) + csv_line_end;
    append_csv_rows(csv, model, columns, {});
    return csv.toUtf8();
}

void offer_copy_and_export(QAbstractItemView *view, const QString &suggested_name,
                           const TableOf &table_of)
{
    auto *copy = new QAction(QStringLiteral("Copy"), view);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(copy, &QAction::triggered, view,
                     [view, table_of] { copy_to_clipboard(*view, table_of); });

    auto *save = new QAction(QStringLiteral("Export as CSV..."), view);
    QObject::connect(save, &QAction::triggered, view, [view, suggested_name, table_of] {
        ask_where_to_save(view, suggested_name, table_of);
    });

    view->addActions({copy, save});
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(view, &QWidget::customContextMenuRequested, view,
                     [view, copy](QPoint at) { show_menu(view, copy, at); });
}

} // namespace tally::ui
