#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

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

TEST(StoreFavorites, TheArchiveBoxOfAllAttacksOfTheMailIsTheFlag)
{
    TempStore store;
    store.db.insert_field_report(u"a"_s, field_fight({u"Bo"_s, u"Cy"_s}), 1.0);
    store.db.insert_field_report(u"b"_s, field_fight({u"Di"_s}), 1.0);
    EXPECT_FALSE(store.db.is_field_favorite(u"a"_s));
    const auto boxes = [&store] {
        return text_of(store.db.connection(), u"SELECT email_box FROM field_reports "
                                              "ORDER BY file_name, attack_id"_s);
    };
    store.db.set_field_favorite(u"a"_s, true);
    EXPECT_TRUE(store.db.is_field_favorite(u"a"_s));
    EXPECT_FALSE(store.db.is_field_favorite(u"b"_s));
    EXPECT_EQ(boxes(), u"Archive\nArchive\nReport");
    store.db.set_field_favorite(u"a"_s, false);
    EXPECT_FALSE(store.db.is_field_favorite(u"a"_s));
    EXPECT_EQ(boxes(), u"Inbox\nInbox\nReport");
}

TEST(StoreHonorLog, NewestFirstAndWhatIsNoIntReadsAsMissing)
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
    EXPECT_EQ(log[0].estimated, 403);
    EXPECT_EQ(log[0].discrepancy, std::nullopt);
    EXPECT_EQ(text_of(store.db.connection(),
                      u"SELECT * FROM honor_summary_log ORDER BY log_time DESC LIMIT 1"_s),
              u"3|10.5|30|20.5|NULL|-3|403|NULL");
    rows_of(store.db.connection(),
            u"INSERT INTO honor_summary_log (log_time, base_honor, new_honor, delta_reports) "
            "VALUES (4, 'many', 3000000000, 12)"_s);
    const auto odd = store.db.recent_honor_log(1).at(0);
    EXPECT_EQ(odd.base_honor, std::nullopt);
    EXPECT_EQ(odd.new_honor, std::nullopt);
    EXPECT_EQ(odd.delta_reports, 12);
}

TEST(StoreCounts, ChainsAreCountedOnceAndRoundsByType)
{
    TempStore store;
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
