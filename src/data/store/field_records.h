#pragma once

#include <QString>

namespace tally::data {

struct FieldSummary {
    int fights = 0; ///< mails
    int attacks = 0;
    int enemies = 0;
    int kvk = 0; ///< mails from a kingdom war
    qint64 my_kp = 0;
    qint64 enemy_kp = 0;
    qint64 my_deaths = 0;
    qint64 enemy_deaths = 0;
    int wins = 0;          ///< attacks with more kill points than the enemy
    double win_rate = 0.0; ///< per cent of the attacks
    double kp_ratio = 0.0; ///< own to enemy kill points, 0 if the enemy has none

    bool operator==(const FieldSummary &) const = default;
};

struct EnemyCount {
    QString name;
    int n = 0;

    bool operator==(const EnemyCount &) const = default;
};

} // namespace tally::data
