#include "ui/parts/filter_bar.h"

#include "ui/parts/control_groups.h"
#include "ui/parts/flow_layout.h"
#include "ui/parts/moment_row.h"
#include "ui/parts/sheet_property.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>

namespace tally::ui {
namespace {

constexpr int row_spacing = 6;

QPushButton *new_button(const QString &text)
{
    auto *button = new QPushButton(text);
    button->setAccessibleName(text);
    return button;
}

} // namespace

FilterBar::FilterBar(int spacing, int gap, QWidget *parent)
    : QGroupBox(QStringLiteral("Filter"), parent), spacing_(spacing)
{
    setAccessibleName(title());
    new FlowLayout(this, -1, spacing + gap, row_spacing);
}

QHBoxLayout *FilterBar::add_group(std::initializer_list<QWidget *> controls)
{
    return add_control_group(*layout(), controls, spacing_);
}

void FilterBar::add_moment(MomentRow *moment, bool is_from)
{
    layout()->addWidget(moment);
    level_control_groups(*layout());
    connect(moment, &MomentRow::dayStepped, this,
            [this, is_from](int days) { Q_EMIT dayStepped(is_from, days); });
}

QComboBox *FilterBar::add_choice(const QString &label, int width)
{
    QComboBox *combo = add_choice_group(*layout(), label, spacing_);
    combo->setMinimumWidth(width);
    connect(combo, &QComboBox::currentIndexChanged, this, &FilterBar::choiceChanged);
    return combo;
}

void FilterBar::add_players()
{
    constexpr int width = 180;
    player_combo_ = add_choice(QStringLiteral("Player:"), width);
}

void FilterBar::add_buttons(int room)
{
    refresh_ = new_button(QStringLiteral("Refresh"));
    auto *clear_filter = new_button(QStringLiteral("Clear filter"));
    connect(refresh_, &QPushButton::clicked, this, &FilterBar::refreshAsked);
    connect(clear_filter, &QPushButton::clicked, this, &FilterBar::clearAsked);
    add_group({refresh_, clear_filter})->setContentsMargins(0, 0, room, 0);
}

void FilterBar::set_players(const std::vector<PlayerEntry> &entries, std::size_t chosen)
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

QString FilterBar::player_text() const
{
    return player_combo_->currentText();
}

std::optional<double> FilterBar::player() const
{
    const int index = player_combo_->currentIndex();
    return index < 0 ? std::nullopt : players_.at(static_cast<std::size_t>(index)).id;
}

void FilterBar::choose_all_players()
{
    const QSignalBlocker no_refresh(player_combo_);
    player_combo_->setCurrentIndex(players_.empty() ? -1 : 0);
}

void FilterBar::set_pending(bool is_pending)
{
    if (!set_sheet_property(*refresh_, "pending", is_pending))
        return;
    refresh_->setToolTip(is_pending ? QStringLiteral("The figures are still those of the period "
                                                     "that was shown before.")
                                    : QString());
    refresh_->setAccessibleDescription(refresh_->toolTip());
}

} // namespace tally::ui
