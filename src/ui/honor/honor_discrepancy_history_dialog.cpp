#include "ui/honor/honor_discrepancy_history_dialog.h"

#include "data/store/tally_db.h"
#include "ui/honor/discrepancy_chart.h"
#include "ui/honor/history_texts.h"
#include "ui/parts/plain_label.h"
#include "ui/parts/table_export.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>

namespace tally::honor {
namespace {

constexpr int shown_rows = 200;

QTableWidget *make_table()
{
    const QStringList headers = history_headers();
    auto *table = new QTableWidget(0, static_cast<int>(headers.size()));
    table->setHorizontalHeaderLabels(headers);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents); // a time
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSortingEnabled(false);
    table->setAccessibleName(QStringLiteral("Reconciliation history"));
    ui::offer_copy_and_export(table, QStringLiteral("honor-history"));
    return table;
}

} // namespace

HonorDiscrepancyHistoryDialog::HonorDiscrepancyHistoryDialog(const ui::Surroundings &around,
                                                             QWidget *parent)
    : DetailsDialog(QStringLiteral("Honor Tracker - History"), {700, 400}, 9, 6, parent),
      chart_(new DiscrepancyChart), table_(make_table()),
      asker_(around.queries, queries::Sight::Seen)
{
    QLabel *caption = ui::plain_label(QStringLiteral("Reconciliation history (estimate vs read). "
                                                     "Positive discrepancy = missing reports."),
                                      QStringLiteral("color: #666; padding: 4px;"));
    caption->setWordWrap(true);
    add(caption);
    add(chart_);
    add(table_, 1);
    // A query that fails leaves the table empty.
    asker_.ask([](const data::TallyDb &db,
                  const queries::IsOutdated &) { return db.recent_honor_log(shown_rows); },
               [this](const std::vector<data::HonorLogRow> &rows) { show_rows(rows); });
}

void HonorDiscrepancyHistoryDialog::show_rows(const std::vector<data::HonorLogRow> &rows)
{
    chart_->set_points(discrepancy_points(rows));
    table_->setRowCount(static_cast<int>(rows.size()));
    int at = 0;
    for (const data::HonorLogRow &row : rows) {
        const QStringList cells = history_cells(row);
        const QVariantList values = history_values(row);
        for (int column = 0; column < cells.size(); ++column) {
            auto *cell = new QTableWidgetItem(cells[column]);
            cell->setData(ui::export_role, values[column]);
            if (column > 0)
                cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table_->setItem(at, column, cell);
        }
        ++at;
    }
}

} // namespace tally::honor
