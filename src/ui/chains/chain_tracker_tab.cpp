#include "ui/chains/chain_tracker_tab.h"

#include "data/store/sql_values.h"
#include "data/store/tally_db.h"
#include "ui/chains/chain_filter_bar.h"
#include "ui/chains/chain_summary_box.h"
#include "ui/chains/chain_texts.h"
#include "ui/chains/hero_pair_list.h"
#include "ui/chains/open_round_overview.h"
#include "ui/items/drop_rate_delegate.h"
#include "ui/items/loot_table_model.h"
#include "ui/parts/table_export.h"

#include <QDateTime>
#include <QHeaderView>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

namespace tally::ui {
namespace {

/// The selected rows of a table by the text of their first column, and what part of it shows.
struct TablePlace {
    QStringList selected;
    int scrolled = 0;
};

TablePlace place_in(const QTableView &table)
{
    TablePlace place;
    for (const QModelIndex &row : table.selectionModel()->selectedRows())
        place.selected << row.data().toString();
    place.scrolled = table.verticalScrollBar()->value();
    return place;
}

void go_back(QTableView &table, const TablePlace &place)
{
    QItemSelection selected;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        const QModelIndex index = table.model()->index(row, 0);
        if (place.selected.contains(index.data().toString()))
            selected.select(index, index);
    }
    table.selectionModel()->select(selected,
                                   QItemSelectionModel::Select | QItemSelectionModel::Rows);
    table.verticalScrollBar()->setValue(place.scrolled);
}

} // namespace

ChainTrackerTab::ChainTrackerTab(const Surroundings &around, double npc_btype, QWidget *parent,
                                 const ChainTrackerSetup &setup)
    : ReportTab(parent), around_(around), npc_btype_(npc_btype), setup_(setup),
      filter_(new ChainFilterBar(today(), this)), summary_(new ChainSummaryBox(this)),
      accounts_(around.queries), figures_(around.queries, this)
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);
    layout->addWidget(filter_);
    layout->addWidget(summary_);
    layout->addWidget(new_lists(), 1);
    show_in_any_size(page);

    connect(filter_, &ChainFilterBar::choiceChanged, this, &ChainTrackerTab::refresh);
    connect(filter_, &ChainFilterBar::refreshAsked, this, &ChainTrackerTab::refresh);
    connect(filter_, &ChainFilterBar::dayStepped, this, &ChainTrackerTab::shift_date);
    connect(filter_, &ChainFilterBar::clearAsked, this, &ChainTrackerTab::on_clear_filter);
    connect(hero_pairs_, &QListWidget::itemClicked, this, &ChainTrackerTab::on_hero_pair_clicked);

    counting_sign_.setSingleShot(true);
    counting_sign_.setInterval(setup_.counting_sign_after);
    connect(&counting_sign_, &QTimer::timeout, summary_, [this] { summary_->set_counting(true); });
    connect(&figures_, &ViewAsker::busyChanged, this, [this](bool busy) {
        if (busy)
            return counting_sign_.start();
        counting_sign_.stop();
        summary_->set_counting(false);
    });
    refresh();
}

/// A window smaller than the page shows a part of it.
void ChainTrackerTab::show_in_any_size(QWidget *page)
{
    auto *view = new QScrollArea;
    view->setFrameShape(QFrame::NoFrame);
    view->setWidgetResizable(true);
    view->setFocusPolicy(Qt::NoFocus);
    view->setWidget(page);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view);
}

QWidget *ChainTrackerTab::new_lists()
{
    hero_pairs_ = new HeroPairList(around_.icon_dir, this);
    loot_table_ = new_loot_table();
    auto *splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(hero_pairs_);
    splitter->addWidget(loot_table_);
    splitter->setChildrenCollapsible(false);
    splitter->setSizes({300, 900});
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    return splitter;
}

QTableView *ChainTrackerTab::new_loot_table()
{
    auto *table = new QTableView;
    loot_model_ = new LootTableModel(around_.icon_dir, table);
    table->setModel(loot_model_);
    table->setAccessibleName(QStringLiteral("Loot"));
    table->setAlternatingRowColors(true);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTabKeyNavigation(false);
    table->setIconSize(QSize(28, 28));
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(34);
    table->setItemDelegateForColumn(LootTableModel::DropRate, new DropRateDelegate(table));
    constexpr std::array widths = {360, 110, 240, 216};
    QHeaderView *header = table->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Fixed);
    header->setStretchLastSection(true);
    for (std::size_t column = 0; column < widths.size(); ++column)
        header->resizeSection(static_cast<int>(column), widths.at(column));
    offer_copy_and_export(table, QStringLiteral("chain-loot"));
    return table;
}

QDate ChainTrackerTab::today() const
{
    return QDateTime::fromSecsSinceEpoch(data::saturated<qint64>(around_.clock()), Qt::UTC).date();
}

ChainFilter ChainTrackerTab::current_filter() const
{
    return chain_filter(npc_btype_, filter_->period(), filter_->player());
}

void ChainTrackerTab::refresh()
{
    around_.db.free_ap_mode = filter_->ap_source();
    const ChainQuestion question = {current_filter(), filter_->player_text()};
    if (figures_.sight() == queries::Sight::Hidden)
        ask_for_accounts();
    figures_.ask(
        [figures = setup_.figures, question](const data::TallyDb &db,
                                             const queries::IsOutdated &is_outdated) {
            return figures(db, question, is_outdated);
        },
        [this](const ChainFigures &figures) { show_figures(figures); });
}

void ChainTrackerTab::ask_for_accounts()
{
    accounts_.ask([](const data::TallyDb &db,
                     const queries::IsOutdated &) { return player_entries(db.players()); },
                  [this](const std::vector<PlayerEntry> &entries) {
                      const PlayerEntry chosen{filter_->player_text(), filter_->player()};
                      filter_->set_players(entries, chosen_player(entries, chosen));
                  });
}

void ChainTrackerTab::show_figures(const ChainFigures &figures)
{
    if (figures.players)
        filter_->set_players(*figures.players, figures.chosen_player);
    if (figures.summary) {
        kills_ = figures.summary->kills;
        summary_->set_cards(chain_cards(*figures.summary));
    }
    if (figures.best_in_filter)
        summary_->set_best_in_filter(
            best_chain_line(QStringLiteral("Filter best chain"), *figures.best_in_filter));
    if (figures.best_overall)
        summary_->set_best_overall(
            best_chain_line(QStringLiteral("Overall best chain"), *figures.best_overall));
    if (figures.hourly)
        filter_->set_sparkline(sparkline(*figures.hourly));
    if (figures.loot) {
        const TablePlace place = place_in(*loot_table_);
        loot_model_->set_rows(*figures.loot, kills_);
        go_back(*loot_table_, place);
    }
    if (figures.hero_pairs)
        hero_pairs_->show_pairs(*figures.hero_pairs, figures.filter);
}

void ChainTrackerTab::on_clear_filter()
{
    filter_->clear(today());
    refresh();
}

void ChainTrackerTab::shift_date(bool which_from, int delta_days)
{
    filter_->shift_date(which_from, delta_days);
    refresh();
}

void ChainTrackerTab::on_hero_pair_clicked(QListWidgetItem *item)
{
    if (const auto choice = item ? HeroPairList::choice_of(*item) : std::nullopt)
        open_round_overview(around_.db, *choice, npc_btype_, filter_->player(), around_.icon_dir,
                            window());
}

} // namespace tally::ui
