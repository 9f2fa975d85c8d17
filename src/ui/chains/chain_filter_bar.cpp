#include "ui/chains/chain_filter_bar.h"

#include "ui/chains/chain_texts.h"
#include "ui/parts/moment_edit.h"
#include "ui/parts/plain_label.h"

#include <QComboBox>
#include <QLabel>

namespace tally::ui {
namespace {

constexpr int spacing = 6;
constexpr int gap = 10;
constexpr int wider_gap = 16;

} // namespace

ChainFilterBar::ChainFilterBar(QDate today, QWidget *parent) : FilterBar(spacing, gap, parent)
{
    from_ = add_period_end(QStringLiteral("From (UTC):"), ChainPeriod::day_start(), true);
    to_ = add_period_end(QStringLiteral("To (UTC):"), ChainPeriod::day_end(), false);
    add_players();
    constexpr int ap_width = 170;
    ap_combo_ = add_choice(QStringLiteral("AP source:"), ap_width);
    ap_combo_->addItem(QStringLiteral("All"), 0);
    ap_combo_->addItem(QStringLiteral("AP-consumed only"), 1);
    ap_combo_->addItem(QStringLiteral("Free AP (Rally) only"), 2);
    add_buttons(wider_gap - gap);
    add_sparkline();
    clear(today);
}

MomentEdit *ChainFilterBar::add_period_end(const QString &label, QTime time_of_new_date,
                                           bool is_from)
{
    auto *moment = new MomentEdit(label, time_of_new_date);
    add_moment(moment, is_from);
    connect(moment, &MomentEdit::changed, this, &ChainFilterBar::mark_refresh);
    return moment;
}

void ChainFilterBar::add_sparkline()
{
    QLabel *label = plain_label(QStringLiteral("Hourly:"), QStringLiteral("font-size: 9pt;"));
    sparkline_ = plain_label(
        sparkline({}),
        QStringLiteral("font-family: Consolas, monospace; font-size: 10pt; color: #808080;"));
    sparkline_->setAccessibleName(QStringLiteral("Chains by hour"));
    add_group({label, sparkline_});
}

ChainPeriod ChainFilterBar::period() const
{
    return {from_->date(), from_->time(), to_->date(), to_->time()};
}

void ChainFilterBar::set_period(const ChainPeriod &period)
{
    from_->set(period.from_date, period.from_time);
    to_->set(period.to_date, period.to_time);
}

void ChainFilterBar::set_shown_period(const ChainPeriod &period)
{
    shown_ = period;
    mark_refresh();
}

void ChainFilterBar::mark_refresh()
{
    set_pending(shown_ && *shown_ != period());
}

void ChainFilterBar::clear(QDate today)
{
    set_period(ChainPeriod::of_day(today));
    choose_all_players();
}

void ChainFilterBar::shift_date(bool which_from, int delta_days)
{
    (which_from ? from_ : to_)->shift_date(delta_days);
}

int ChainFilterBar::ap_source() const
{
    return ap_combo_->currentData().toInt();
}

void ChainFilterBar::set_sparkline(const QString &text)
{
    sparkline_->setText(text);
}

} // namespace tally::ui
