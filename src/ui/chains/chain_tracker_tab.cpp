#include "ui/chains/chain_tracker_tab.h"

#include "data/store/tally_db.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/chains/chain_cards.h"
#include "ui/chains/chain_filter_bar.h"
#include "ui/chains/chain_gap_notes.h"
#include "ui/chains/chain_summary_box.h"
#include "ui/chains/chain_texts.h"
#include "ui/chains/hero_pair_list.h"
#include "ui/chains/open_round_overview.h"
#include "ui/items/loot_table.h"
#include "ui/parts/page_view.h"

#include <QListWidget>
#include <QSplitter>
#include <QVBoxLayout>

namespace tally::ui {

ChainTrackerTab::ChainTrackerTab(const Surroundings &around, double npc_btype, QWidget *parent,
                                 const ChainTrackerSetup &setup)
    : ReportTab(parent), around_(around), npc_btype_(npc_btype), setup_(setup),
      day_watch_(around.clock, nullptr, setup.day_watch_interval),
      filter_(new ChainFilterBar(day_watch_.today(), this)), summary_(new ChainSummaryBox(this)),
      gap_notes_(new ChainGapNotes(this)), accounts_(around.queries),
      figures_(around.queries, this), chosen_pair_(around.queries, this)
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);
    layout->addWidget(filter_);
    layout->addWidget(summary_);
    layout->addWidget(gap_notes_);
    layout->addWidget(new_lists(), 1);
    show_in_any_size(page, this);

    connect(filter_, &ChainFilterBar::choiceChanged, this, &ChainTrackerTab::refresh);
    connect(filter_, &ChainFilterBar::refreshAsked, this, &ChainTrackerTab::refresh);
    connect(filter_, &ChainFilterBar::dayStepped, this, &ChainTrackerTab::shift_date);
    connect(filter_, &ChainFilterBar::clearAsked, this, &ChainTrackerTab::on_clear_filter);
    connect(gap_notes_, &ChainGapNotes::folderWanted, this, &ReportTab::mailFolderWanted);
    connect(gap_notes_, &ChainGapNotes::dayWanted, this,
            [this](QDate day) { show_period(ChainPeriod::of_day(day)); });
    connect(&day_watch_, &DayWatch::dayChanged, this, &ChainTrackerTab::follow_day);
    connect(hero_pairs_, &QListWidget::itemClicked, this, &ChainTrackerTab::on_hero_pair_clicked);

    summary_->show_counting_of(figures_, setup_.counting_sign_after);
    refresh();
}

QWidget *ChainTrackerTab::new_lists()
{
    hero_pairs_ = new HeroPairList(around_.icon_dir, this);
    loot_table_ = new LootTable(around_.icon_dir, QStringLiteral("chain-loot"),
                                {{360, 110, 240, 216}, QHeaderView::Fixed});
    auto *splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(hero_pairs_);
    splitter->addWidget(loot_table_);
    splitter->setChildrenCollapsible(false);
    splitter->setSizes({300, 900});
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    return splitter;
}

ChainFilter ChainTrackerTab::current_filter() const
{
    return chain_filter(npc_btype_, filter_->period(), filter_->player());
}

void ChainTrackerTab::refresh()
{
    filter_->set_shown_period(filter_->period());
    around_.db.free_ap_mode = filter_->ap_source();
    const ChainPageQuestion question = {current_filter(), filter_->player_text(),
                                        around_.settings.get(settings::mailcache_dir)};
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
        gap_notes_->show_gap(figures.gap);
    }
    if (figures.best_in_filter)
        summary_->set_best_in_filter(
            best_chain_line(QStringLiteral("Filter best chain"), *figures.best_in_filter));
    if (figures.best_overall)
        summary_->set_best_overall(
            best_chain_line(QStringLiteral("Overall best chain"), *figures.best_overall));
    if (figures.hourly)
        filter_->set_sparkline(sparkline(*figures.hourly));
    if (figures.loot)
        loot_table_->show_rows(*figures.loot, kills_);
    if (figures.hero_pairs)
        hero_pairs_->show_pairs(*figures.hero_pairs, figures.filter);
}

void ChainTrackerTab::on_clear_filter()
{
    filter_->clear(day_watch_.today());
    refresh();
}

void ChainTrackerTab::shift_date(bool which_from, int delta_days)
{
    filter_->shift_date(which_from, delta_days);
    refresh();
}

void ChainTrackerTab::show_period(const ChainPeriod &period)
{
    filter_->set_period(period);
    refresh();
}

void ChainTrackerTab::follow_day(QDate before, QDate now)
{
    if (filter_->period() == ChainPeriod::of_day(before))
        show_period(ChainPeriod::of_day(now));
}

void ChainTrackerTab::on_hero_pair_clicked(QListWidgetItem *item)
{
    if (const auto choice = item ? HeroPairList::choice_of(*item) : std::nullopt)
        open_round_overview(chosen_pair_, around_.queries, *choice, npc_btype_, filter_->player(),
                            around_.icon_dir, window());
}

} // namespace tally::ui
