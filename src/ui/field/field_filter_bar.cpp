#include "ui/field/field_filter_bar.h"

namespace tally::ui {
namespace {

constexpr int spacing = 4;
constexpr int gap = 12;

} // namespace

FieldFilterBar::FieldFilterBar(QWidget *parent) : FilterBar(spacing, gap, parent)
{
    from_ = add_period_end(QStringLiteral("From (UTC):"), day_start, true);
    to_ = add_period_end(QStringLiteral("To (UTC):"), day_end, false);
    add_players();
    add_buttons();
}

MomentText *FieldFilterBar::add_period_end(const QString &label, const QString &time_of_new_date,
                                           bool is_from)
{
    auto *moment = new MomentText(label, time_of_new_date);
    add_moment(moment, is_from);
    connect(moment, &MomentText::changed, this, &FieldFilterBar::mark_period);
    connect(moment, &MomentText::accepted, this, &FieldFilterBar::refreshAsked);
    return moment;
}

FieldFilter FieldFilterBar::filter() const
{
    return field_filter(from_->texts(), to_->texts(), player());
}

void FieldFilterBar::set_shown_filter(const FieldFilter &filter)
{
    shown_ = filter;
    mark_period();
}

void FieldFilterBar::mark_period()
{
    const FieldFilter entered = filter();
    const auto is_unreadable = [](const MomentText &moment, bool is_read) {
        return !is_read && !moment.texts().date.trimmed().isEmpty();
    };
    from_->mark_unreadable(is_unreadable(*from_, entered.from.has_value()));
    to_->mark_unreadable(is_unreadable(*to_, entered.to.has_value()));
    set_pending(shown_ && (shown_->from != entered.from || shown_->to != entered.to));
}

void FieldFilterBar::clear()
{
    from_->clear();
    to_->clear();
}

void FieldFilterBar::shift_date(bool which_from, int delta_days, QDate today)
{
    MomentText *moment = which_from ? from_ : to_;
    moment->set_date(shifted_date(moment->texts().date, delta_days, today));
}

} // namespace tally::ui
