#include "ui/trials/trial_filter_row.h"

#include "ui/parts/local_dates.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace tally::ui {
namespace {

QCheckBox *boss_check(const QString &name)
{
    auto *check = new QCheckBox(name);
    check->setAccessibleName(name);
    check->setChecked(true);
    return check;
}

} // namespace

TrialFilterRow::TrialFilterRow(platform::Clock clock, QWidget *parent)
    : FilterRow(parent), baulur_check_(boss_check(QStringLiteral("Ironhand Baulur"))),
      khaolak_check_(boss_check(QStringLiteral("Miser Khaolak"))),
      dates_(new LocalDates(std::move(clock)))
{
    add_group({new QLabel(QStringLiteral("Bosses:")), baulur_check_, khaolak_check_});
    add_group({dates_});
    gap_combo_ = add_choice(QStringLiteral("Session gap:"));
    for (const int minutes : {60, 120, 180, 240})
        gap_combo_->addItem(QStringLiteral("%1 min").arg(minutes), minutes);
    player_combo_ = add_choice(QStringLiteral("Player:"));
    player_combo_->setMinimumWidth(180);
    player_combo_->addItem(QStringLiteral("All players"), QString());
    connect(player_combo_, &QComboBox::currentIndexChanged, this, &TrialFilterRow::playerChosen);
    connect(dates_, &LocalDates::newDay, this, &TrialFilterRow::newDay);
}

TrialQuestion TrialFilterRow::question() const
{
    TrialQuestion question;
    for (const QCheckBox *check : {baulur_check_, khaolak_check_}) {
        if (check->isChecked())
            question.bosses << check->text();
    }
    question.from = dates_->from();
    question.to = dates_->to();
    question.gap_minutes = gap_combo_->currentData().toInt();
    question.player = player_combo_->currentData().toString();
    return question;
}

void TrialFilterRow::set_players(const std::vector<data::TrialPlayerRow> &players)
{
    // An open list would be closed under the user's hand.
    if (players == players_)
        return;
    players_ = players;
    const QSignalBlocker no_choice(player_combo_);
    const QString chosen = player_combo_->currentData().toString();
    player_combo_->clear();
    player_combo_->addItem(QStringLiteral("All players"), QString());
    for (const data::TrialPlayerRow &player : players) {
        if (!player.name.isEmpty())
            player_combo_->addItem(
                QStringLiteral("%1  (%2)").arg(player.name, QString::number(player.kills)),
                player.name);
    }
    const int index =
        player_combo_->findData(chosen, Qt::UserRole, Qt::MatchExactly | Qt::MatchCaseSensitive);
    player_combo_->setCurrentIndex(std::max(index, 0));
}

} // namespace tally::ui
