#pragma once

#include "platform/clock/clock.h"
#include "ui/forts/fort_figures.h"
#include "ui/parts/report_tab.h"
#include "ui/parts/view_asker.h"

class QComboBox;
class QLabel;
class QModelIndex;

namespace tally::ui {

class FilterRow;
class ItemRowTable;
class LocalDates;
class LootTable;

/// The reports of barbarian forts, and what they dropped.
class FortRallyTab : public ReportTab {
    Q_OBJECT

public:
    /// \param queries outlives the tab
    FortRallyTab(queries::StoreQueries *queries, QString icon_dir, QWidget *parent = nullptr,
                 platform::Clock clock = platform::system_time);

    void refresh() final;
    /// Whether figures are still to come.
    bool busy() const { return figures_.busy(); }

private Q_SLOTS:
    void on_row_activated(const QModelIndex &index);

private:
    QWidget *new_page();
    void show_figures(const FortFigures &figures);

    queries::StoreQueries *queries_;
    QString icon_dir_;
    FilterRow *filter_;
    LocalDates *dates_;
    QComboBox *level_combo_;
    QLabel *reports_label_;
    ItemRowTable *reports_view_;
    LootTable *loot_view_;
    std::vector<data::FortRow> reports_; ///< as in the table
    ViewAsker figures_;
};

} // namespace tally::ui
