#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

class QAbstractItemModel;
class QAbstractItemView;

namespace tally::ui {

/// Of a cell: the bare value behind its text, a number without grouping, for whom the cell is to be
/// copied or written to a file. A cell without it gives its text.
constexpr int export_role = Qt::UserRole + 100;

/// The rows of a selection, on whatever level, with the headers of the shown columns,
/// tab-separated, a line each.
QString copied_rows(const QAbstractItemView &view);

/// All rows of a model, child rows after their parent, as CSV by RFC 4180 in UTF-8 with a byte
/// order mark. A text that a spreadsheet would run as a formula gets a leading apostrophe, also in
/// copied rows; a number never does.
QByteArray csv_of(const QAbstractItemModel &model);

enum class ExportedRows { All, Selected };

/// What is copied and written instead of a view's own cells, where those are no table.
using TableOf = std::function<std::unique_ptr<QAbstractItemModel>(ExportedRows)>;

/// Gives a table, tree or list Ctrl+C and a context menu with "Copy" and "Export as CSV...".
/// \param suggested_name of the file, without ending
/// \param table_of may be empty
void offer_copy_and_export(QAbstractItemView *view, const QString &suggested_name,
                           const TableOf &table_of = {});

} // namespace tally::ui
