#pragma once

#include "ui/field/field_attack.h"
#include "ui/field/hero_names.h"

#include <QVariantMap>

#include <initializer_list>
#include <utility>
#include <vector>

namespace tally::test {

using Columns = std::initializer_list<std::pair<const char *, QVariant>>;

/// A row of the store with these values.
inline QVariantMap attack_row(Columns columns)
{
    QVariantMap row;
    for (const auto &[column, value] : columns)
        row.insert(QLatin1StringView(column), value);
    return row;
}

inline ui::FieldAttack attack_of(Columns columns)
{
    ui::HeroNames heroes;
    return ui::attack_in(attack_row(columns), heroes);
}

inline std::vector<ui::FieldAttack> all_of(const std::vector<std::vector<ui::FieldAttack>> &reports)
{
    std::vector<ui::FieldAttack> attacks;
    for (const auto &report : reports)
        attacks.insert(attacks.end(), report.begin(), report.end());
    return attacks;
}

/// Attacks of one report of one tour.
inline std::vector<ui::FieldAttack> report_of(int attacks, const QString &name, double time = 100.0)
{
    std::vector<ui::FieldAttack> report;
    for (int number = 1; number <= attacks; ++number)
        report.push_back(attack_of({{"file_name", name},
                                    {"attack_id", double(number)},
                                    {"attack_seq", number},
                                    {"n_attacks", attacks},
                                    {"email_id", name},
                                    {"tour_id", name},
                                    {"email_time", time},
                                    {"enemy_name", QStringLiteral("Eve")}}));
    return report;
}

} // namespace tally::test
