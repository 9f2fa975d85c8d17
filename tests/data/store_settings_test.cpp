#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

TEST(StoreSettings, AStoredEmptyTextIsAValueAndAMissingRowIsNone)
{
    TempStore store;
    EXPECT_EQ(store.db.get_setting(u"theme"_s), std::nullopt);
    EXPECT_EQ(store.db.setting_or(u"theme"_s, u"dark"_s), u"dark");
    for (const QString &value : {u"light"_s, u""_s, QString(), u"Pięść 名 \U0001F600"_s}) {
        store.db.set_setting(u"theme"_s, value);
        EXPECT_EQ(store.db.get_setting(u"theme"_s), value);
        EXPECT_EQ(store.db.setting_or(u"theme"_s, u"dark"_s), value);
    }
}

TEST(StoreSettings, AHostileKeyIsJustAText)
{
    TempStore store;
    store.db.set_setting(u"a"_s, u"kept"_s);
    store.db.set_setting(u"x'); DROP TABLE settings; --%1"_s, u"'\"%2"_s);
    EXPECT_EQ(store.db.get_setting(u"x'); DROP TABLE settings; --%1"_s), u"'\"%2"_s);
    EXPECT_EQ(store.db.get_setting(u"a"_s), u"kept"_s);
}

TEST(StoreFavorites, TheArchiveBoxOfAllAttacksOfTheMailIsTheFlag)
{
    TempStore store;
    store.db.insert_field_report(u"a"_s, field_fight({u"Bo"_s, u"Cy"_s}), 1.0);
    store.db.insert_field_report(u"b"_s, field_fight({u"Di"_s}), 1.0);
    EXPECT_FALSE(store.db.is_field_favorite(u"a"_s));
    const auto boxes = [&store] {
        QStringList all;
        QSqlQuery rows(u"SELECT email_box FROM field_reports ORDER BY file_name, attack_id"_s,
                       store.db.connection());
        while (rows.next())
            all << rows.value(0).toString();
        return all;
    };
    store.db.set_field_favorite(u"a"_s, true);
    EXPECT_TRUE(store.db.is_field_favorite(u"a"_s));
    EXPECT_FALSE(store.db.is_field_favorite(u"b"_s));
    EXPECT_THAT(boxes(), ElementsAre(u"Archive"_s, u"Archive"_s, u"Report"_s));
    store.db.set_field_favorite(u"a"_s, false);
    EXPECT_FALSE(store.db.is_field_favorite(u"a"_s));
    EXPECT_THAT(boxes(), ElementsAre(u"Inbox"_s, u"Inbox"_s, u"Report"_s));
}

TEST(StoreHonorLog, NewestFirstWithMissingNumbersLeftOut)
{
    TempStore store;
    for (const int n : {2, 3, 1}) {
        store.now = n;
        store.db.log_honor_summary(10.5, 10 * n, 20.5, std::nullopt, -n, 400 + n, std::nullopt);
    }
    const auto log = store.db.recent_honor_log(2);
    ASSERT_EQ(log.size(), 2U);
    EXPECT_EQ(log[0].log_time, 3.0);
    EXPECT_EQ(log[1].log_time, 2.0);
    EXPECT_EQ(log[0].base_honor, 30);
    EXPECT_EQ(log[0].new_honor, std::nullopt);
    EXPECT_EQ(log[0].delta_reports, -3);
    EXPECT_EQ(log[0].estimated, 403);
    EXPECT_EQ(log[0].discrepancy, std::nullopt);
    QSqlQuery row(u"SELECT base_timestamp, new_timestamp FROM honor_summary_log LIMIT 1"_s,
                  store.db.connection());
    ASSERT_TRUE(row.next());
    EXPECT_EQ(row.value(0).toDouble(), 10.5);
    EXPECT_EQ(row.value(1).toDouble(), 20.5);
}

TEST(StoreHonorLog, WhatIsNoIntReadsAsMissing)
{
    TempStore store;
    QSqlQuery(u"INSERT INTO honor_summary_log (log_time, base_honor, new_honor, delta_reports) "
              "VALUES (1, 'many', 3000000000, 12)"_s,
              store.db.connection());
    const auto log = store.db.recent_honor_log(9);
    ASSERT_EQ(log.size(), 1U);
    EXPECT_EQ(log[0].base_honor, std::nullopt);
    EXPECT_EQ(log[0].new_honor, std::nullopt);
    EXPECT_EQ(log[0].delta_reports, 12);
}

TEST(StoreCounts, ChainsAreCountedOnceAndRoundsByType)
{
    TempStore store;
    EXPECT_TRUE(store.db.players().empty());
    EXPECT_EQ(store.db.chain_file_count(), 0);
    auto other = battle_round(1.0);
    other.npc_btype = 2.0;
    store.db.insert_report(u"a"_s, battle(1.0, {battle_round(1.0), other}), 1.0);
    store.db.insert_report(u"b"_s, battle(1.0, {battle_round(1.0)}), 1.0);
    store.db.insert_field_report(u"f"_s, field_fight({u"Bo"_s, u"Cy"_s}), 1.0);
    EXPECT_EQ(store.db.chain_file_count(), 2);
    EXPECT_EQ(store.db.report_count(std::nullopt), 3);
    EXPECT_EQ(store.db.report_count(2.0), 1);
    EXPECT_EQ(store.db.report_count(9.0), 0);
    EXPECT_EQ(store.db.field_report_count(), 2);
}

TEST(StoreCounts, TheAccountWithTheMostChainsComesFirstUnderItsGreatestName)
{
    TempStore store;
    auto rare = battle(1.0, {battle_round(1.0), battle_round(1.0), battle_round(1.0)});
    rare.player_id = 5.0;
    auto unknown = battle(1.0, {battle_round(1.0)});
    unknown.player_id.reset();
    auto renamed = battle(1.0, {battle_round(1.0)});
    renamed.player_name = u"Zoe"_s;
    store.db.insert_report(u"a"_s, rare, 1.0);
    store.db.insert_report(u"b"_s, unknown, 1.0);
    store.db.insert_report(u"c"_s, renamed, 1.0);
    store.db.insert_report(u"d"_s, battle(1.0, {battle_round(1.0)}), 1.0);
    const auto players = store.db.players();
    ASSERT_EQ(players.size(), 2U);
    EXPECT_EQ(players[0].player_id, 77.0);
    EXPECT_EQ(players[0].name, u"Zoe");
    EXPECT_EQ(players[0].n, 2);
    EXPECT_EQ(players[1].player_id, 5.0);
    EXPECT_EQ(players[1].n, 1);
}
