#pragma once

#include "ui/field/field_figures.h"
#include "ui/parts/report_tab.h"
#include "ui/parts/surroundings.h"
#include "ui/parts/view_asker.h"

class QTreeWidgetItem;

namespace tally::ui {

class AttackTree;
class FieldFilterBar;
class SummaryBox;

/// The attacks of one kind on other armies, by tour and report.
class FieldFightsTab : public ReportTab {
    Q_OBJECT

public:
    /// \param mode 0 field fights, 1 rallies, 2 garrison actions, 3 favourites
    FieldFightsTab(const Surroundings &around, int mode, QWidget *parent = nullptr);

    void refresh() final;
    /// Whether figures are still to come.
    bool busy() const { return figures_.busy(); }

private Q_SLOTS:
    void on_row_double_click(QTreeWidgetItem *item, int col);
    void on_clear_filter();
    void shift_date(bool which_from, int delta_days);

private:
    void connect_page();
    void show_figures(FieldFigures figures);

    Surroundings around_;
    const FieldMode mode_;
    FieldFilterBar *filter_;
    SummaryBox *summary_;
    AttackTree *tree_;
    std::optional<FieldSource> shown_; ///< what the tree was read from
    ViewAsker opened_;                 ///< an attack for its window
    ViewAsker figures_;
};

} // namespace tally::ui
