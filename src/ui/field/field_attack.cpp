#include "ui/field/field_attack.h"

#include "data/store/sql_values.h"
#include "data/values/numbers.h"
#include "ui/field/hero_names.h"

#include <algorithm>
#include <cmath>

namespace tally::ui {
namespace {

/// Numbers in full: the shortest text of 5000000.0 would be "5e+06".
QString key_text(const QVariant &id)
{
    return id.typeId() == QMetaType::Double ? data::id_text(id.toDouble()) : id.toString();
}

} // namespace

std::optional<qint64> whole_number(const QVariant &value)
{
    constexpr double bound = 9.2e18;
    if (value.isNull())
        return std::nullopt;
    if (value.typeId() == QMetaType::Double) {
        const double number = value.toDouble();
        return std::abs(number) < bound ? std::optional(qint64(std::llround(number)))
                                        : std::nullopt;
    }
    bool ok = false;
    const qint64 number = value.toLongLong(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

FieldAttack attack_in(const QVariantMap &row, HeroNames &heroes)
{
    const auto value = [&row](const char *column) {
        return row.value(QLatin1StringView(column));
    };
    const auto text = [&value](const char *column) {
        return value(column).toString();
    };
    const auto number = [&value](const char *column) {
        return whole_number(value(column)).value_or(0);
    };
    const auto small = [&value](const char *column) {
        return data::int_in(value(column)).value_or(0);
    };
    FieldAttack attack;
    attack.file_name = text("file_name");
    attack.attack_id = value("attack_id");
    const QVariant tour = value("tour_id");
    attack.tour = tour.isNull() ? QStringLiteral("?_%1").arg(attack.file_name) : key_text(tour);
    const QVariant report = value("email_id");
    attack.report = report.isNull() ? attack.file_name : key_text(report);
    attack.time = data::number_or_zero(value("email_time"));
    attack.number = std::max(small("attack_seq"), 1);
    attack.count = small("n_attacks");
    attack.is_rally = small("is_rally") != 0;
    attack.is_kvk = small("is_kvk") != 0;
    attack.player = text("player_name");
    attack.alliance = text("alliance_name");
    attack.enemy = text("enemy_name");
    attack.enemy_alliance = text("enemy_alliance");
    attack.enemy_npc_type = data::number_or_zero(value("enemy_npc_type"));
    attack.my_kill_points = number("my_kill_score");
    attack.enemy_kill_points = number("enemy_kill_score");
    attack.my_heroes = {heroes.of(value("my_hid")), heroes.of(value("my_hid2"))};
    attack.enemy_heroes = {heroes.of(value("enemy_hid")), heroes.of(value("enemy_hid2"))};
    return attack;
}

} // namespace tally::ui
