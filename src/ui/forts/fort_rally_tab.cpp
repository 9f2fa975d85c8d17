#include "ui/forts/fort_rally_tab.h"

#include "ui/forts/fort_rally_details_dialog.h"
#include "ui/forts/fort_texts.h"
#include "ui/items/item_row_table.h"
#include "ui/items/loot_table.h"
#include "ui/parts/filter_row.h"
#include "ui/parts/local_dates.h"
#include "ui/parts/page_view.h"
#include "ui/parts/plain_label.h"

#include <QComboBox>
#include <QLabel>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tally::ui {

FortRallyTab::FortRallyTab(queries::StoreQueries *queries, QString icon_dir, QWidget *parent,
                           platform::Clock clock)
    : ReportTab(parent), queries_(queries), icon_dir_(std::move(icon_dir)), filter_(new FilterRow),
      dates_(new LocalDates(std::move(clock))),
      reports_label_(plain_label(QStringLiteral("Reports:"))),
      reports_view_(new ItemRowTable(
          {.name = QStringLiteral("Fort reports"),
           .export_name = QStringLiteral("fort-reports"),
           .headers = {QStringLiteral("Time"), QStringLiteral("Level"), QStringLiteral("Tile"),
                       QStringLiteral("Damage%"), QStringLiteral("Loot")}},
          icon_dir_)),
      loot_view_(new LootTable(icon_dir_, QStringLiteral("fort-loot"),
                               {{300, 90, 200, 170}, QHeaderView::Interactive})),
      figures_(*queries, this)
{
    filter_->add_group({dates_});
    level_combo_ = filter_->add_choice(QStringLiteral("Min level:"));
    level_combo_->addItem(QStringLiteral("all"), 0);
    for (int level = 1; level <= 10; ++level)
        level_combo_->addItem(QStringLiteral("≥ %1").arg(level), level);
    show_in_any_size(new_page(), this);
    connect(filter_, &FilterRow::refreshAsked, this, &FortRallyTab::refresh);
    connect(dates_, &LocalDates::newDay, this, &FortRallyTab::refresh);
    connect(reports_view_, &ItemRowTable::rowOpened, this, &FortRallyTab::on_row_activated);
    refresh();
}

QWidget *FortRallyTab::new_page()
{
    auto *reports = new QWidget;
    auto *left = new QVBoxLayout(reports);
    left->setContentsMargins(0, 0, 0, 0);
    left->setSpacing(4);
    left->addWidget(reports_label_);
    left->addWidget(reports_view_, 1);
    auto *splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(reports);
    splitter->addWidget(loot_view_);
    splitter->setChildrenCollapsible(false);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({700, 700});
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);
    layout->addWidget(filter_);
    layout->addWidget(splitter, 1);
    return page;
}

void FortRallyTab::refresh()
{
    const FortQuestion question = {dates_->from(), dates_->to(),
                                   level_combo_->currentData().toInt()};
    figures_.ask(
        [question](const data::TallyDb &db, const queries::IsOutdated &is_outdated) {
            return fort_figures(db, question, is_outdated);
        },
        [this](const FortFigures &figures) { show_figures(figures); });
}

void FortRallyTab::show_figures(const FortFigures &figures)
{
    if (figures.reports) {
        reports_ = *figures.reports;
        std::vector<ItemRow> rows;
        rows.reserve(reports_.size());
        std::transform(reports_.begin(), reports_.end(), std::back_inserter(rows), fort_row);
        reports_view_->set_rows(std::move(rows));
        reports_label_->setText(reports_caption(reports_.size()));
    }
    if (figures.loot)
        loot_view_->show_rows(figures.loot->rows, figures.loot->forts);
}

void FortRallyTab::on_row_activated(const QModelIndex &index)
{
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= reports_.size())
        return;
    auto *dialog = new FortRallyDetailsDialog(queries_, reports_[row], icon_dir_, this);
    dialog->open();
}

} // namespace tally::ui
