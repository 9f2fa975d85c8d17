#pragma once

#include "ui/keep/keep_figures.h"
#include "ui/keep/keep_texts.h"
#include "ui/parts/report_tab.h"
#include "ui/parts/view_asker.h"

class QLabel;
class QModelIndex;

namespace tally::services {
class KeepCooldownService;
}

namespace tally::ui {

class ItemRowTable;

/// The countdown to the next attack on the barbarian keep, above the kills so far.
class BarbarianKeepTab : public ReportTab {
    Q_OBJECT

public:
    /// \param queries outlives the tab, as does the service
    BarbarianKeepTab(queries::StoreQueries *queries, services::KeepCooldownService *service,
                     QString icon_dir, QWidget *parent = nullptr);

    void refresh() final;
    /// Whether figures are still to come.
    bool busy() const { return figures_.busy(); }

private Q_SLOTS:
    void on_row_activated(const QModelIndex &index);
    void on_countdown(double secondsRemaining, bool isReady);

private:
    void load_table();
    void show_band(const KeepBand &band);
    void show_figures(const KeepFigures &figures);
    void show_details(const std::optional<data::TrialDetail> &detail, bool had_keyboard);

    services::KeepCooldownService *service_;
    QString icon_dir_;
    QLabel *status_label_;
    QLabel *player_label_;
    ItemRowTable *view_;
    ViewAsker details_;
    ViewAsker figures_;
};

} // namespace tally::ui
