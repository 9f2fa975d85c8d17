#include "data/master/master_cache.h"

#include "support/hostile_numbers.h"
#include "support/print_qt.h"
#include "support/temp_mails.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace tally;
using namespace Qt::StringLiterals;
using data::MasterCache;

namespace {

class MasterCacheTest : public testing::Test {
protected:
    void SetUp() override { cache.clear(); }
    void TearDown() override { cache.clear(); }

    /// Replaces the one section of a kind that look-ups read.
    void set(const QString &kind, const QString &section, const char *json)
    {
        ASSERT_TRUE(cache.load_json(kind, "{\"" + section.toUtf8() + "\":" + json + "}"));
    }

    MasterCache &cache = MasterCache::instance();
};

} // namespace

TEST_F(MasterCacheTest, AnswersBeforeAnyTableHasArrivedAndWithoutAnId)
{
    EXPECT_EQ(cache.hero(999.0).name, u"");
    EXPECT_EQ(cache.hero_name(std::nullopt), u"");
    EXPECT_EQ(cache.barb(150009.0).name, u"Barb");
    EXPECT_EQ(cache.barb(std::nullopt).name, u"Barb");
    EXPECT_EQ(cache.formation_name(99.0), u"?99");
    EXPECT_EQ(cache.formation_name(std::nullopt), u"—");
    EXPECT_EQ(cache.item(4.0, 201.0).unit_value, 1.0);
    EXPECT_EQ(cache.item(4.0, std::nullopt).name, u"");
}

TEST_F(MasterCacheTest, WhatIsNoJsonObjectLeavesTheOldTable)
{
    set(u"heroes"_s, u"heroes"_s, R"({"123": {"name": "Old"}})");
    for (const char *json : {"[]", "", "{\"heroes\":", "5", "null"})
        EXPECT_FALSE(cache.load_json(u"heroes"_s, json)) << json;
    EXPECT_EQ(cache.hero_name(123.0), u"Old");
    set(u"heroes"_s, u"heroes"_s, R"({"5": {"name": "New"}})");
    EXPECT_EQ(cache.hero_name(123.0), u"H123");
    cache.clear();
    EXPECT_EQ(cache.hero_name(5.0), u"H5");
}

TEST_F(MasterCacheTest, TablesOfWrongShapesAnswerLikeEmptyOnes)
{
    for (const char *json : {"5", "null", "\"text\"", "[[]]", "[5, null, {}]",
                             "{\"1\": 5, \"1.0\": [],"
                             "\"1.0_1.0\": \"x\"}"}) {
        set(u"heroes"_s, u"heroes"_s, json);
        set(u"items"_s, u"items"_s, json);
        set(u"barbs"_s, u"types"_s, json);
        set(u"icons_index"_s, u"loot"_s, json);
        EXPECT_EQ(cache.hero_name(1.0), u"H1") << json;
        EXPECT_EQ(cache.item(1.0, 1.0).unit_value, 1.0) << json;
        EXPECT_EQ(cache.barb(1.0).level, std::nullopt) << json;
        EXPECT_EQ(cache.icon_path(u"loot"_s, u"1"_s, u"/"_s), std::nullopt) << json;
    }
}

TEST_F(MasterCacheTest, HeroesAreKeptByTheTextOfTheirId)
{
    set(u"heroes"_s, u"heroes"_s, R"({"123": {"name": "Achilles", "icon": "achilles.webp"},
                                      "2.5": {"name": "Half"}, "7": {"icon": "x.webp"}})");
    EXPECT_EQ(cache.hero(123.0).icon, u"achilles.webp");
    const std::pair<double, QString> names[] = {
        {123.0, u"Achilles"_s},   {2.5, u"Half"_s},    {7.0, u"H7"_s},
        {-0.0, u"H0"_s},          {1e15, u"H1e+15"_s}, {999999999999999.0, u"H999999999999999"_s},
        {std::nan(""), u"Hnan"_s}};
    for (const auto &[id, name] : names)
        EXPECT_EQ(cache.hero_name(id), name);
}

TEST_F(MasterCacheTest, BarbarianLevelIsTypeAndOffset)
{
    set(u"barbs"_s, u"types"_s, R"([
        {"npc_type_min": "x", "npc_type_max": 150013, "name": "No number"},
        {"npc_type_min": 1e300, "npc_type_max": 1e300, "name": "No int"},
        {"npc_type_min": 150009, "npc_type_max": 150013, "name": "English Soldiers",
         "level_offset": -149968},
        {"npc_type_min": 150013, "npc_type_max": 150013, "name": "Too late"},
        {"npc_type_min": 7, "npc_type_max": 8},
        {"npc_type_min": 2147483647, "npc_type_max": 2147483647, "level_offset": 1}])");
    using Level = std::optional<int>;
    const std::tuple<double, QString, Level> types[] = {{150009.0, u"English Soldiers"_s, 41},
                                                        {150013.9, u"English Soldiers"_s, 45},
                                                        {150014.0, u"Barb"_s, Level()},
                                                        {7.0, u"Barb"_s, 7}};
    for (const auto &[type, name, level] : types) {
        EXPECT_EQ(cache.barb(type).name, name);
        EXPECT_EQ(cache.barb(type).level, level) << type;
    }
    EXPECT_EQ(cache.barb(2147483647.0).level, std::nullopt);
    for (const double hostile : test::hostile_numbers)
        EXPECT_EQ(cache.barb(hostile).level, std::nullopt) << hostile;
}

TEST_F(MasterCacheTest, FormationsAreFoundUnderBothTexts)
{
    set(u"armaments"_s, u"formations"_s,
        R"({"1.0": "Infantry", "1": "Hidden", "2": "Cavalry", "3.0": null, "3": "Archers"})");
    EXPECT_EQ(cache.formation_name(1.0), u"Infantry");
    EXPECT_EQ(cache.formation_name(2.0), u"Cavalry");
    EXPECT_EQ(cache.formation_name(3.0), u"Archers");
    EXPECT_EQ(cache.formation_name(12345678.0), u"?1.23457e+07");
    EXPECT_EQ(cache.formation_name(1e300), u"?1e+300");
}

TEST_F(MasterCacheTest, ItemsAreKeptByFloatingPointTexts)
{
    set(u"items"_s, u"items"_s, R"({
        "4.0_201.0": {"name": "Food", "unit_value": 1000, "unit": "K", "icon": "food.webp"},
        "4.0_202.0": {"name": "Wood"}, "4.0_203.0": {"unit_value": 0},
        "0.10000000000000001_1.0": {"name": "Fraction"}})");
    const data::ItemInfo food = cache.item(4.0, 201.0);
    EXPECT_EQ(food.name, u"Food");
    EXPECT_EQ(food.unit_value, 1000.0);
    EXPECT_EQ(food.unit, u"K");
    EXPECT_EQ(food.icon, u"food.webp");
    EXPECT_EQ(cache.item(4.0, 202.0).unit_value, 1.0);
    EXPECT_EQ(cache.item(4.0, 203.0).unit_value, 0.0);
    EXPECT_EQ(cache.item(0.1, 1.0).name, u"Fraction");
}

TEST_F(MasterCacheTest, IconIsThereOnceItsFileIsAndCannotLieOutsideItsFolder)
{
    set(u"icons_index"_s, u"loot"_s, R"({"food": {"hash": "ab12"}, "gone": {"hash": "cd34"},
        "none": {"hash": ""}, "number": {"hash": 5}, "up": {"hash": "../secret"},
        "root": {"hash": "/etc/x"}, "in": {"hash": "sub/../ab12"}, "odd": {"hash": "a b"}})");
    const test::TempMails icons;
    ASSERT_TRUE(QDir(icons.path()).mkdir(u"sub"_s));
    const QString path = icons.add(u"sub/ab12.webp"_s, "x");
    for (const auto &name : {u"secret.webp"_s, u"sub/.webp"_s, u"sub/a b.webp"_s})
        icons.add(name, "x");
    const auto icon = [&](const QString &section, const QString &key) {
        return cache.icon_path(section, key, icons.file(u"sub"_s));
    };
    EXPECT_EQ(icon(u"loot"_s, u"food"_s), path);
    EXPECT_EQ(icon(u"all_loot"_s, u"food"_s), std::nullopt);
    for (const auto &key :
         {u"gone"_s, u"none"_s, u"number"_s, u"unknown"_s, u"up"_s, u"root"_s, u"in"_s, u"odd"_s})
        EXPECT_EQ(icon(u"loot"_s, key), std::nullopt) << key.toStdString();
}
