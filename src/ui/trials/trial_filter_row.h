#pragma once

#include "platform/clock/clock.h"
#include "ui/parts/filter_row.h"
#include "ui/trials/trial_figures.h"

class QCheckBox;

namespace tally::ui {

class LocalDates;

/// In which the bosses, the days, the gap between two sessions and the player are chosen.
class TrialFilterRow : public FilterRow {
    Q_OBJECT

public:
    explicit TrialFilterRow(platform::Clock clock, QWidget *parent = nullptr);

    /// What is chosen now, without a session.
    TrialQuestion question() const;
    /// Does not count as a choice. A player who is not among them gives way to all players.
    void set_players(const std::vector<data::TrialPlayerRow> &players);

Q_SIGNALS:
    void playerChosen();
    void newDay();

private:
    QCheckBox *baulur_check_;
    QCheckBox *khaolak_check_;
    LocalDates *dates_;
    QComboBox *gap_combo_;
    QComboBox *player_combo_;
    std::vector<data::TrialPlayerRow> players_; ///< in the combo
};

} // namespace tally::ui
