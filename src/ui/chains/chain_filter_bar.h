#pragma once

#include "ui/chains/chain_filter.h"
#include "ui/parts/player_entries.h"

#include <QGroupBox>

#include <initializer_list>
#include <vector>

class QComboBox;
class QLabel;
class QPushButton;

namespace tally::ui {

class MomentEdit;

/// The row in which the period, the player and the source of action points are chosen, with the
/// hours of the chains at its end. A window too narrow for it gets a second row.
class ChainFilterBar : public QGroupBox {
    Q_OBJECT

public:
    ChainFilterBar(QDate today, QWidget *parent);

    ChainPeriod period() const;
    void set_period(const ChainPeriod &period);
    /// The period of the figures on the page; "Refresh" is marked while another one is entered.
    void set_shown_period(const ChainPeriod &period);
    /// All of this day, all players.
    void clear(QDate today);
    /// A date whose change sets its time, as if it had been entered.
    void shift_date(bool which_from, int delta_days);

    /// 0 all rounds, 1 those that cost action points, 2 those that were free.
    int ap_source() const;

    /// Does not count as a change by the user.
    void set_players(const std::vector<PlayerEntry> &entries, std::size_t chosen);
    QString player_text() const;
    std::optional<double> player() const;

    void set_sparkline(const QString &text);

Q_SIGNALS:
    void choiceChanged(); ///< of the player or the source of action points
    void dayStepped(bool which_from, int delta_days);
    void refreshAsked();
    void clearAsked();

private:
    MomentEdit *add_moment(const QString &label, QTime time_of_new_date, bool is_from);
    QComboBox *add_choice(const QString &name, int width);
    void add_buttons();
    void add_sparkline();
    /// Widgets that stay together. \return their layout
    QLayout *add_group(std::initializer_list<QWidget *> widgets);
    void level_groups();
    void mark_refresh();

    MomentEdit *from_;
    MomentEdit *to_;
    QPushButton *refresh_;
    QComboBox *player_combo_;
    QComboBox *ap_combo_;
    QLabel *sparkline_;
    std::vector<PlayerEntry> players_; ///< the entries of the combo
    std::optional<ChainPeriod> shown_;
};

} // namespace tally::ui
