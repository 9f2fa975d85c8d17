#pragma once

#include "ui/chains/chain_figures.h"
#include "ui/chains/chain_filter.h"
#include "ui/parts/day_watch.h"
#include "ui/parts/report_tab.h"
#include "ui/parts/surroundings.h"
#include "ui/parts/view_asker.h"

#include <chrono>
#include <functional>

class QListWidgetItem;

namespace tally::ui {

class ChainFilterBar;
class ChainGapNotes;
class ChainSummaryBox;
class HeroPairList;
class LootTable;

/// What the tab is built for. A test changes some of it; the program takes it as it is.
struct ChainTrackerSetup {
    std::chrono::milliseconds day_watch_interval = DayWatch::shipped_interval;
    std::chrono::milliseconds counting_sign_after{150};
    std::function<decltype(chain_figures)> figures = chain_figures;
};

/// What the chains of a period achieved and dropped, for one account or all.
class ChainTrackerTab : public ReportTab {
    Q_OBJECT

public:
    /// \param npc_btype the npc base type whose chains are shown
    ChainTrackerTab(const Surroundings &around, double npc_btype, QWidget *parent = nullptr,
                    const ChainTrackerSetup &setup = {});

    void refresh() final;
    ChainFilter current_filter() const;
    /// Whether figures are still to come.
    bool busy() const { return figures_.busy(); }

private Q_SLOTS:
    void on_hero_pair_clicked(QListWidgetItem *item);
    void on_clear_filter();
    void shift_date(bool which_from, int delta_days);

private:
    QWidget *new_lists();
    void ask_for_accounts();
    void show_figures(const ChainFigures &figures);
    void show_period(const ChainPeriod &period);
    /// Whoever looks at all of the day looks at all of the new one.
    void follow_day(QDate before, QDate now);

    Surroundings around_;
    double npc_btype_;
    ChainTrackerSetup setup_;
    DayWatch day_watch_;
    ChainFilterBar *filter_;
    ChainSummaryBox *summary_;
    ChainGapNotes *gap_notes_;
    HeroPairList *hero_pairs_ = nullptr;
    LootTable *loot_table_ = nullptr;
    int kills_ = 0;           ///< what the drop rates are shares of
    queries::Asker accounts_; ///< for the filter, which others ask for whether it is seen or not
    ViewAsker figures_;
    ViewAsker chosen_pair_;
};

} // namespace tally::ui
