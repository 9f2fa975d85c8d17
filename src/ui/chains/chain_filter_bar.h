#pragma once

#include "ui/chains/chain_filter.h"
#include "ui/parts/filter_bar.h"

class QLabel;

namespace tally::ui {

class MomentEdit;

/// The row in which the period, the player and the source of action points are chosen, with the
/// hours of the chains at its end.
class ChainFilterBar : public FilterBar {
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

    void set_sparkline(const QString &text);

private:
    MomentEdit *add_period_end(const QString &label, QTime time_of_new_date, bool is_from);
    void add_sparkline();
    void mark_refresh();

    MomentEdit *from_;
    MomentEdit *to_;
    QComboBox *ap_combo_;
    QLabel *sparkline_;
    std::optional<ChainPeriod> shown_;
};

} // namespace tally::ui
