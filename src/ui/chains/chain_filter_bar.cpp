#include "ui/chains/chain_filter_bar.h"

#include "ui/chains/chain_texts.h"
#include "ui/parts/flow_layout.h"

#include <QComboBox>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTimeEdit>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr int spacing = 6;
constexpr int gap = 10;

QPushButton *new_day_button(const QString &sign, const QString &tool_tip, const QString &moment)
{
    constexpr int width = 28;
    auto *button = new QPushButton(sign);
    button->setFixedWidth(width);
    button->setStyleSheet(QStringLiteral("padding: 2px 4px; font-weight: bold;"));
    button->setToolTip(tool_tip);
    button->setAccessibleName(QStringLiteral("%1: %2").arg(moment, tool_tip));
    return button;
}

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
    from_ = add_moment(QStringLiteral("From (UTC):"), ChainPeriod::day_start());
    to_ = add_moment(QStringLiteral("To (UTC):"), ChainPeriod::day_end());
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
    auto *refresh = new_button(QStringLiteral("Refresh"));
    auto *clear_filter = new_button(QStringLiteral("Clear filter"));
    connect(refresh, &QPushButton::clicked, this, &ChainFilterBar::refreshAsked);
    connect(clear_filter, &QPushButton::clicked, this, &ChainFilterBar::clearAsked);
    constexpr int wider_gap = 16;
    add_group({refresh, clear_filter})->setContentsMargins(0, 0, wider_gap - gap, 0);
}

ChainFilterBar::Moment ChainFilterBar::add_moment(const QString &name, QTime time_of_new_date)
{
    const QString short_name = name.section(u' ', 0, 0);
    const bool is_from = time_of_new_date == ChainPeriod::day_start();
    auto *label = new QLabel(name);
    auto *previous =
        new_day_button(QStringLiteral("−"), QStringLiteral("Previous day (-1)"), short_name);
    auto *date = new QDateEdit;
    date->setCalendarPopup(true);
    date->setTimeSpec(Qt::UTC); // local time lacks some hours
    date->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    date->setAccessibleName(QStringLiteral("%1 date (UTC)").arg(short_name));
    auto *next = new_day_button(QStringLiteral("+"), QStringLiteral("Next day (+1)"), short_name);
    auto *time = new QTimeEdit;
    time->setTimeSpec(Qt::UTC);
    time->setDisplayFormat(QStringLiteral("HH:mm"));
    time->setAccessibleName(QStringLiteral("%1 time (UTC)").arg(short_name));
    add_group({label, previous, date, next, time});
    label->setBuddy(date);

    connect(date, &QDateEdit::dateChanged, time,
            [time, time_of_new_date] { time->setTime(time_of_new_date); });
    connect(previous, &QPushButton::clicked, this,
            [this, is_from] { Q_EMIT dayStepped(is_from, -1); });
    connect(next, &QPushButton::clicked, this, [this, is_from] { Q_EMIT dayStepped(is_from, 1); });
    return {date, time};
}

QComboBox *ChainFilterBar::add_choice(const QString &name, int width)
{
    auto *label = new QLabel(name);
    auto *combo = new QComboBox;
    combo->setMinimumWidth(width);
    combo->setAccessibleName(name.chopped(1));
    label->setBuddy(combo);
    add_group({label, combo});
    return combo;
}

void ChainFilterBar::add_sparkline()
{
    auto *label = new QLabel(QStringLiteral("Hourly:"));
    label->setStyleSheet(QStringLiteral("font-size: 9pt;"));
    sparkline_ = new QLabel;
    sparkline_->setTextFormat(Qt::PlainText);
    sparkline_->setAccessibleName(QStringLiteral("Chains by hour"));
    sparkline_->setStyleSheet(
        QStringLiteral("font-family: Consolas, monospace; font-size: 10pt; color: #808080;"));
    sparkline_->setText(sparkline({}));
    add_group({label, sparkline_});
}

ChainPeriod ChainFilterBar::period() const
{
    return {from_.date->date(), from_.time->time(), to_.date->date(), to_.time->time()};
}

void ChainFilterBar::clear(QDate today)
{
    const ChainPeriod period = ChainPeriod::of_day(today);
    from_.date->setDate(period.from_date);
    from_.time->setTime(period.from_time);
    to_.date->setDate(period.to_date);
    to_.time->setTime(period.to_time);
    const QSignalBlocker no_refresh(player_combo_);
    player_combo_->setCurrentIndex(players_.empty() ? -1 : 0);
}

void ChainFilterBar::shift_date(bool which_from, int delta_days)
{
    QDateEdit *date = (which_from ? from_ : to_).date;
    date->setDate(date->date().addDays(delta_days));
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
