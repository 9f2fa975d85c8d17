#include "support/print_qt.h"
#include "ui/items/item_look.h"
#include "ui/parts/format_count.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <limits>

namespace tally::ui {
namespace {

struct LookCase {
    const char *unit;
    const char *name;
    double unit_value;
    const char *fill; ///< nothing for the empty badge
};

class ItemBadgeOf : public testing::TestWithParam<LookCase> {};

TEST_P(ItemBadgeOf, IsThatOfTheFirstRuleThatHolds)
{
    const auto &[unit, name, unit_value, fill] = GetParam();
    const ItemBadge badge =
        item_badge(QString::fromUtf8(unit), QString::fromUtf8(name), unit_value);
    ASSERT_EQ(badge.fill.has_value(), fill != nullptr);
    ASSERT_EQ(badge.border.has_value(), fill != nullptr);
    if (fill) {
        EXPECT_EQ(badge.fill->name(), QLatin1StringView(fill));
        EXPECT_EQ(badge.border->name(), u"#e0b04a");
    }
}

constexpr const char *grey = "#c8ccd0";
constexpr const char *green = "#4a9a5f";
constexpr const char *blue = "#2d4b6a";
constexpr const char *purple = "#5a3d6d";

INSTANTIATE_TEST_SUITE_P(
    Rules, ItemBadgeOf,
    testing::Values(
        LookCase{"CryStals", "Star", 1, nullptr}, LookCase{"min", "Star", 1, green},
        LookCase{"MIN", "", 1, green}, LookCase{"leather", "Worn Leather", 1, grey},
        LookCase{"Iron Ore", "Advanced ore", 1, green}, LookCase{"animal bones", "elite", 1, green},
        LookCase{"ebony", "Epic wood", 1, green}, LookCase{"ebony", "legendary", 1, green},
        LookCase{"xp", "Star of Elite", 1, purple}, LookCase{"wood", "", 1, grey},
        LookCase{"stone", "Star", 1, grey}, LookCase{"food", "", 1, grey},
        LookCase{"gold", "Elite", 1, grey}, LookCase{"gems", "Star", 100, blue},
        LookCase{"gems", "Star", 99.99, green},
        LookCase{"gems", "", std::numeric_limits<double>::quiet_NaN(), green},
        LookCase{"key", "Silver Star Key", 1, purple}, LookCase{"key", "Star Key", 1, "#d4a017"},
        LookCase{"buff", "Sculpture", 1, purple}, LookCase{"chest", "Starlight elite", 1, purple},
        LookCase{"chest", "Advanced elite", 1, blue}, LookCase{"chest", "advanced", 1, green},
        LookCase{"chest", "", 1, grey}, LookCase{"buff", "Elite", 1, green},
        LookCase{"book", "", 1, green}, LookCase{"packs", "", 1, green},
        LookCase{"ap", "", 1, green}, LookCase{"?", "star", 1, purple},
        LookCase{"", "Elite", 1, grey}, LookCase{"", "", 1, grey}));

TEST(UnitLabel, SaysMinutesOrMoreThanOnePiece)
{
    struct {
        const char16_t *unit;
        double unit_value;
        const char16_t *label;
    } constexpr cases[] = {{u"min", 60, u"60m"},
                           {u"Min", 1500.9, u"1500m"},
                           {u"min", 0, u"0m"},
                           {u"gems", 1.99, u""},
                           {u"food", 2, u"2"},
                           {u"food", 50'000, u"50,000"},
                           {u"food", -5, u""},
                           {u"food", 1e10, u""},
                           {u"min", std::numeric_limits<double>::quiet_NaN(), u""}};
    for (const auto &[unit, unit_value, label] : cases)
        EXPECT_EQ(unit_label(QString::fromUtf16(unit), unit_value), QStringView(label));
}

TEST(FormatCount, GroupsWithBlanksWhereTheLocaleHasCommas)
{
    EXPECT_EQ(format_count(999), u"999");
    EXPECT_EQ(format_count(-1'234'567), u"-1 234 567");
    EXPECT_EQ(format_count(std::numeric_limits<qint64>::min()), u"-9 223 372 036 854 775 808");
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(format_count(1'234), u"1.234");
    QLocale::setDefault(QLocale(QLocale::English));
}

} // namespace
} // namespace tally::ui
