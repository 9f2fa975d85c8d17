#pragma once

#include "ui/field/kill_points.h"

#include <QString>
#include <QVariantMap>

#include <array>
#include <optional>

namespace tally::ui {

class HeroNames;

/// One attack as lists show it. Numbers that the store does not have are 0.
struct FieldAttack {
    QString file_name;
    QVariant attack_id; ///< as the store has it
    QString tour;       ///< what the tour is told apart by
    QString report;     ///< likewise the report in its tour
    double time = 0.0;  ///< of the mail, seconds since the Unix epoch
    int number = 1;     ///< in its mail, from 1
    int count = 0;      ///< of the mail's attacks
    bool is_rally = false;
    bool is_kvk = false;
    QString player;
    QString alliance;
    QString enemy;
    QString enemy_alliance;
    double enemy_npc_type = 0.0;
    qint64 my_kill_points = 0;
    qint64 enemy_kill_points = 0;
    std::array<QString, 2> my_heroes; ///< their names; empty without a second hero
    std::array<QString, 2> enemy_heroes;

    Outcome outcome() const { return outcome_of(my_kill_points, enemy_kill_points); }

    bool operator==(const FieldAttack &) const = default;
};

/// \param row by column name, as `TallyDb::field_attacks` gives it
FieldAttack attack_in(const QVariantMap &row, HeroNames &heroes);

/// A whole number that fits, numbers with a fraction rounded.
std::optional<qint64> whole_number(const QVariant &value);

} // namespace tally::ui
