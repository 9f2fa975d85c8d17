#include "ui/chains/chain_filter_bar.h"

#include "ui/chains/chain_texts.h"
#include "ui/parts/flow_layout.h"
#include "ui/parts/moment_edit.h"
#include "ui/parts/plain_label.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr int spacing = 6;
constexpr int gap = 10;

QPushButton *new_button(const QString &text)
{
    auto *button = new QPushButton(text);
    button->setAccessibleName(text);
    return button;
}

} // namespace

ChainFilterBar::ChainFilterBar(QDate today, QWidget *parent)
    : QGroupBox(QStringLiteral("Filter"), parent)
{
    setAccessibleName(title());
    new FlowLayout(this, -1, spacing + gap, spacing);
    from_ = add_moment(QStringLiteral("From (UTC):"), ChainPeriod::day_start(), true);
    to_ = add_moment(QStringLiteral("To (UTC):"), ChainPeriod::day_end(), false);
    player_combo_ = add_choice(QStringLiteral("Player:"), 180);
    ap_combo_ = add_choice(QStringLiteral("AP source:"), 170);
    ap_combo_->addItem(QStringLiteral("All"), 0);
    ap_combo_->addItem(QStringLiteral("AP-consumed only"), 1);
    ap_combo_->addItem(QStringLiteral("Free AP (Rally) only"), 2);
    add_buttons();
    add_sparkline();
    level_groups();
    clear(today);

    for (const QComboBox *combo : {player_combo_, ap_combo_})
        connect(combo, &QComboBox::currentIndexChanged, this, &ChainFilterBar::choiceChanged);
}

QLayout *ChainFilterBar::add_group(std::initializer_list<QWidget *> widgets)
{
    auto *group = new QWidget;
    auto *row = new QHBoxLayout(group);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    for (QWidget *widget : widgets)
        row->addWidget(widget);
    layout()->addWidget(group);
    return row;
}

/// Lets what stands in one row have one height, so that all of it is on one line.
void ChainFilterBar::level_groups()
{
    int height = 0;
    for (int i = 0; i < layout()->count(); ++i)
        height = std::max(height, layout()->itemAt(i)->sizeHint().height());
    for (int i = 0; i < layout()->count(); ++i)
        layout()->itemAt(i)->widget()->setMinimumHeight(height);
}

void ChainFilterBar::add_buttons()
{
    refresh_ = new_button(QStringLiteral("Refresh"));
    auto *clear_filter = new_button(QStringLiteral("Clear filter"));
    connect(refresh_, &QPushButton::clicked, this, &ChainFilterBar::refreshAsked);
    connect(clear_filter, &QPushButton::clicked, this, &ChainFilterBar::clearAsked);
    constexpr int wider_gap = 16;
    add_group({refresh_, clear_filter})->setContentsMargins(0, 0, wider_gap - gap, 0);
}

MomentEdit *ChainFilterBar::add_moment(const QString &label, QTime time_of_new_date, bool is_from)
{
    auto *moment = new MomentEdit(label, time_of_new_date);
    layout()->addWidget(moment);
    connect(moment, &MomentEdit::changed, this, &ChainFilterBar::mark_refresh);
    connect(moment, &MomentEdit::dayStepped, this,
            [this, is_from](int days) { Q_EMIT dayStepped(is_from, days); });
    return moment;
}

QComboBox *ChainFilterBar::add_choice(const QString &name, int width)
{
    QLabel *label = plain_label(name);
    auto *combo = new QComboBox;
    combo->setMinimumWidth(width);
    combo->setAccessibleName(name.chopped(1));
    label->setBuddy(combo);
    add_group({label, combo});
    return combo;
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
    const bool is_pending = shown_ && *shown_ != period();
    if (refresh_->property("pending").toBool() == is_pending)
        return;
    refresh_->setProperty("pending", is_pending);
    refresh_->setToolTip(is_pending ? QStringLiteral("The figures are still those of the period "
                                                     "that was shown before.")
                                    : QString());
    refresh_->setAccessibleDescription(refresh_->toolTip());
    refresh_->style()->unpolish(refresh_); // the sheet looks at properties only then
    refresh_->style()->polish(refresh_);
}

void ChainFilterBar::clear(QDate today)
{
    set_period(ChainPeriod::of_day(today));
    const QSignalBlocker no_refresh(player_combo_);
    player_combo_->setCurrentIndex(players_.empty() ? -1 : 0);
}

void ChainFilterBar::shift_date(bool which_from, int delta_days)
{
    (which_from ? from_ : to_)->shift_date(delta_days);
}

int ChainFilterBar::ap_source() const
{
    return ap_combo_->currentData().toInt();
}

void ChainFilterBar::set_players(const std::vector<PlayerEntry> &entries, std::size_t chosen)
{
    const QSignalBlocker no_refresh(player_combo_);
    // An open list would be closed under the user's hand.
    if (entries != players_) {
        players_ = entries;
        player_combo_->clear();
        for (const PlayerEntry &entry : entries)
            player_combo_->addItem(entry.text);
    }
    player_combo_->setCurrentIndex(static_cast<int>(chosen));
}

QString ChainFilterBar::player_text() const
{
    return player_combo_->currentText();
}

std::optional<double> ChainFilterBar::player() const
{
    const int index = player_combo_->currentIndex();
    return index < 0 ? std::nullopt : players_.at(static_cast<std::size_t>(index)).id;
}

void ChainFilterBar::set_sparkline(const QString &text)
{
    sparkline_->setText(text);
}

} // namespace tally::ui
