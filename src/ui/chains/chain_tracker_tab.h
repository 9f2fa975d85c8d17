#pragma once

#include "ui/chains/chain_figures.h"
#include "ui/chains/chain_filter.h"
#include "ui/parts/report_tab.h"
#include "ui/parts/surroundings.h"
#include "ui/parts/view_asker.h"

#include <QTimer>

#include <chrono>
#include <functional>

class QListWidgetItem;
class QTableView;

namespace tally::ui {

class ChainFilterBar;
class ChainSummaryBox;
class HeroPairList;
class LootTableModel;

/// What the tab is built for. A test changes some of it; the program takes it as it is.
struct ChainTrackerSetup {
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

    void refresh() override;
    ChainFilter current_filter() const;
    /// Whether figures are still to come.
    bool busy() const { return figures_.busy(); }

private Q_SLOTS:
    void on_hero_pair_clicked(QListWidgetItem *item);
    void on_clear_filter();
    void shift_date(bool which_from, int delta_days);

private:
    void show_in_any_size(QWidget *page);
    QWidget *new_lists();
    QTableView *new_loot_table();
    void ask_for_accounts();
    void show_figures(const ChainFigures &figures);
    QDate today() const;

    Surroundings around_;
    double npc_btype_;
    ChainTrackerSetup setup_;
    ChainFilterBar *filter_;
    ChainSummaryBox *summary_;
    HeroPairList *hero_pairs_ = nullptr;
    QTableView *loot_table_ = nullptr;
    LootTableModel *loot_model_ = nullptr;
    int kills_ = 0; ///< what the drop rates are shares of
    QTimer counting_sign_;
    queries::Asker accounts_; ///< for the filter, which others ask for whether it is seen or not
    ViewAsker figures_;
};

} // namespace tally::ui
