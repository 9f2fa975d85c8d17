#pragma once

#include "ui/field/kill_points.h"

#include <QString>
#include <QVariantMap>

#include <array>
#include <vector>

namespace tally::ui {

/// What the window of one attack says, text by text.

struct HeroDetails {
    QString name;
    QString level;
    QString skills;
    QString equipment;    ///< empty if there is nothing to say
    QString inscriptions; ///< likewise
};

struct SideDetails {
    QString title;
    QString castle; ///< and formation
    std::vector<HeroDetails> heroes;
    QString buffs;
    std::array<QString, 5> losses; ///< by `loss_titles`
};

inline constexpr std::array loss_titles = {u"Kill score", u"Deaths", u"Bad hurt", u"Hurt",
                                           u"Power drop"};

struct AttackDetails {
    QString title;
    QString head;
    Outcome outcome = Outcome::Draw;
    QString favorite_key; ///< of the mail; empty if it has no name
    SideDetails mine;
    SideDetails theirs;
    QString ratio;
};

/// \param row all columns of the attack, as `TallyDb::field_attack` gives them; any may be missing
AttackDetails attack_details(const QVariantMap &row);

} // namespace tally::ui
