#pragma once

#include "platform/clock/clock.h"
#include "ui/parts/report_tab.h"
#include "ui/parts/view_asker.h"
#include "ui/trials/trial_figures.h"

class QLabel;
class QModelIndex;

namespace tally::ui {

class ItemRowTable;
class LootCards;
class TrialFilterRow;

/// The group kills of bosses, gathered into sessions, with everybody's loot.
class BaulurRunTab : public ReportTab {
    Q_OBJECT

public:
    /// \param queries outlives the tab
    BaulurRunTab(queries::StoreQueries *queries, QString icon_dir, QWidget *parent = nullptr,
                 platform::Clock clock = platform::system_time);

    void refresh() final;
    /// Whether figures are still to come.
    bool busy() const { return figures_.busy() || session_figures_.busy(); }

private Q_SLOTS:
    void on_session_row_activated(const QModelIndex &index);
    void on_player_row_activated(const QModelIndex &index);

private:
    QWidget *new_page();
    void show_figures(const TrialFigures &figures);
    void show_sessions(const std::vector<data::TrialSession> &sessions);
    void show_session(const SessionFigures &figures);
    void show_no_session();
    void ask_for_session(const data::TrialSession &session);

    queries::StoreQueries *queries_;
    QString icon_dir_;
    TrialFilterRow *filter_;
    LootCards *loot_cards_;
    QLabel *sessions_label_;
    ItemRowTable *sessions_view_;
    QLabel *players_label_;
    ItemRowTable *players_view_;
    std::vector<data::TrialSession> sessions_;
    data::TrialSession selected_session_; ///< without files if there is none
    bool placing_ = false;                ///< it is not the user who selects
    ViewAsker session_figures_;
    ViewAsker figures_;
};

} // namespace tally::ui
