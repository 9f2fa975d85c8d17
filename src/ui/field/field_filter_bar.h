#pragma once

#include "ui/field/field_filter.h"
#include "ui/parts/filter_bar.h"

namespace tally::ui {

/// The row in which the period and the player are chosen, the days as free text.
class FieldFilterBar : public FilterBar {
    Q_OBJECT

public:
    explicit FieldFilterBar(QWidget *parent = nullptr);

    FieldFilter filter() const;
    /// That of the figures on the page; "Refresh" is marked while another period is entered.
    void set_shown_filter(const FieldFilter &filter);
    /// No period. The player stays.
    void clear();
    /// As if the day had been typed.
    void shift_date(bool which_from, int delta_days, QDate today);

private:
    MomentText *add_period_end(const QString &label, const QString &time_of_new_date, bool is_from);
    void mark_period();

    MomentText *from_;
    MomentText *to_;
    std::optional<FieldFilter> shown_;
};

} // namespace tally::ui
