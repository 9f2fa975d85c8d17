#include "ui/items/item_look.h"

#include "data/values/numbers.h"

#include <algorithm>
#include <array>

namespace tally::ui {
namespace {

using Words = std::array<QLatin1StringView, 4>;
using namespace Qt::Literals::StringLiterals;

constexpr QRgb grey = 0xffc8ccd0;
constexpr QRgb green = 0xff4a9a5f;
constexpr QRgb blue = 0xff2d4b6a;
constexpr QRgb purple = 0xff5a3d6d;
constexpr QRgb gold = 0xffd4a017;
constexpr QRgb badge_border = 0xffe0b04a;

constexpr Words materials = {"leather"_L1, "iron ore"_L1, "animal bones"_L1, "ebony"_L1};
constexpr Words resources = {"wood"_L1, "stone"_L1, "food"_L1, "gold"_L1};
constexpr Words fine_grades = {"ADVANCED"_L1, "ELITE"_L1, "EPIC"_L1, "LEGENDARY"_L1};

/// Holds for an item whose unit is one of `units`, whose name has one of `words` and whose unit
/// value is at least `at_least`; what is left empty asks for nothing.
struct LookRule {
    std::optional<QRgb> fill = {}; ///< without it the badge stays empty
    Words units = {};
    Words words = {};
    std::optional<double> at_least = {};
};

/// The first that holds decides; the last one always holds.
constexpr LookRule look_rules[] = {
    {.units = {"crystals"_L1}},
    {.fill = green, .units = {"min"_L1}},
    {.fill = green, .units = materials, .words = fine_grades},
    {.fill = grey, .units = materials},
    {.fill = purple, .units = {"xp"_L1}},
    {.fill = grey, .units = resources},
    {.fill = blue, .units = {"gems"_L1}, .at_least = 100.0},
    {.fill = green, .units = {"gems"_L1}},
    {.fill = purple, .units = {"key"_L1}, .words = {"SILVER"_L1}},
    {.fill = gold, .units = {"key"_L1}},
    {.fill = purple, .words = {"SCULPTURE"_L1, "STAR"_L1}},
    {.fill = green, .units = {"buff"_L1}},
    {.fill = blue, .units = {"chest"_L1}, .words = {"ELITE"_L1}},
    {.fill = green, .units = {"chest"_L1}, .words = {"ADVANCED"_L1}},
    {.fill = grey, .units = {"chest"_L1}},
    {.fill = green, .units = {"book"_L1, "packs"_L1}},
    {.fill = green, .units = {"ap"_L1}},
    {.fill = grey},
};

template <typename Fits>
bool any_or_none_asked(const Words &words, Fits fits)
{
    return words.front().isEmpty() || std::ranges::any_of(words, [&](QLatin1StringView word) {
               return !word.isEmpty() && fits(word);
           });
}

bool holds(const LookRule &rule, const QString &lower_unit, const QString &upper_name,
           double unit_value)
{
    return any_or_none_asked(rule.units, [&](auto unit) { return lower_unit == unit; }) &&
           any_or_none_asked(rule.words, [&](auto word) { return upper_name.contains(word); }) &&
           (!rule.at_least || unit_value >= *rule.at_least);
}

} // namespace

ItemBadge item_badge(const QString &unit, const QString &name, double unit_value)
{
    const QString lower_unit = unit.toLower();
    const QString upper_name = name.toUpper();
    const auto &rule = *std::ranges::find_if(look_rules, [&](const LookRule &candidate) {
        return holds(candidate, lower_unit, upper_name, unit_value);
    });
    if (!rule.fill)
        return {};
    return {QColor::fromRgb(*rule.fill), QColor::fromRgb(badge_border)};
}

QString unit_label(const QString &unit, double unit_value)
{
    const std::optional<int> whole = data::to_int(unit_value);
    if (!whole)
        return {};
    if (unit.compare("min"_L1, Qt::CaseInsensitive) == 0)
        return QStringLiteral("%1m").arg(*whole);
    return *whole < 2 ? QString() : QStringLiteral("%L1").arg(*whole);
}

} // namespace tally::ui
