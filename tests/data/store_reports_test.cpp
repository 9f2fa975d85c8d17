#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/store_dump.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

QString text(const TempStore &store, const QString &sql)
{
    return text_of(store.db.connection(), sql);
}

} // namespace

TEST(StoreReports, EveryFieldOfAChainReachesItsColumn)
{
    TempStore store;
    data::BattleReport report;
    report.result = 1.5;
    report.report_time = 2.5;
    report.chain_start_time = 3.5;
    report.chain_end_time = 4.5;
    report.hero_id_1 = 5.5;
    report.hero_id_2 = 6.5;
    report.player_id = 7.5;
    report.player_name = u"Ada"_s;
    report.alliance_name = u"Wolves"_s;
    data::BattleRound round;
    round.npc_btype = 8.5;
    round.npc_type = 9.5;
    round.level = 10.5;
    round.npc_ctid = 11.5;
    round.disappear_tick = 12.5;
    round.damage_taken = 13.5;
    round.damage_dealt = 14.5;
    round.ets = 15.5;
    round.is_fort_round = 1;
    round.loot = {item(16.5, 17.5, 18.5), item(16.0, {}, -1e300)};
    report.rounds = {round, data::BattleRound()};
    store.db.insert_report(u"a"_s, report, 19.5);
    EXPECT_EQ(text(store, u"SELECT file_name, round_no, result, report_time, chain_start_time, "
                          "chain_end_time, hero_id_1, hero_id_2, player_id, player_name, "
                          "alliance_name, npc_btype, npc_type, level, npc_ctid, disappear_tick, "
                          "damage_taken, damage_dealt, ets, is_fort_round, is_free_ap, "
                          "file_mtime, imported_at FROM reports ORDER BY round_no"_s),
              u"a|0|1.5|2.5|3.5|4.5|5.5|6.5|7.5|Ada|Wolves|8.5|9.5|10.5|11.5|12.5|13.5|14.5|15.5|"
              "1|0|19.5|5000.25\n"
              "a|1|1.5|2.5|3.5|4.5|5.5|6.5|7.5|Ada|Wolves|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL|"
              "0|0|19.5|5000.25"_s);
    EXPECT_EQ(text(store, u"SELECT file_name, round_no, item_type, item_subtype, value FROM loot "
                          "ORDER BY id"_s),
              u"a|0|16.5|17.5|18.5\na|0|16|NULL|-1e+300"_s);
    report = {};
    report.player_name = u""_s;
    report.player_id = std::nan("");
    report.is_square_rally = true;
    report.rounds = {data::BattleRound(), round};
    store.db.insert_report(u"b"_s, report, 1.0);
    EXPECT_EQ(text(store,
                   u"SELECT is_fort_round, is_free_ap, player_name, alliance_name, player_id, "
                   "result FROM reports WHERE file_name = 'b' ORDER BY round_no"_s),
              u"0|1|NULL|NULL|NULL|NULL\n1|0|NULL|NULL|NULL|NULL"_s);
}

TEST(StoreReports, EveryFieldOfAnAttackReachesItsColumn)
{
    TempStore store;
    QVariantMap attack;
    QStringList expected;
    for (const QStringList &column :
         rows_of(store.db.connection(), u"PRAGMA table_info(field_reports)"_s)) {
        attack.insert(column.at(1), expected.size());
        expected << QString::number(expected.size());
    }
    store.db.insert_field_report(u"f"_s, {attack}, 2.5);
    expected[0] = u"f"_s;
    expected[3] = u"2.5"_s;
    expected[4] = u"5000.25"_s;
    EXPECT_EQ(rows_of(store.db.connection(), u"SELECT * FROM field_reports"_s).front(), expected);
}

TEST(StoreReports, AnAttackKeepsTheDecodedTypesAndWhatItLacksIsNull)
{
    TempStore store;
    const QVariantMap attack{{u"attack_id"_s, 2.0},
                             {u"email_time"_s, 3.25},
                             {u"email_box"_s, u"Report"_s},
                             {u"my_death"_s, 4},
                             {u"my_hid"_s, QVariantMap{{u"a"_s, 1}}},
                             {u"no_such_column"_s, 1}};
    store.db.insert_field_report(u"f"_s, {attack}, 1.0);
    EXPECT_EQ(text(store, u"SELECT quote(attack_id), quote(email_time), quote(email_box), "
                          "quote(my_death), quote(tour_id), is_kvk FROM field_reports"_s),
              u"2.0|3.25|'Report'|4|NULL|NULL"_s);
}

TEST(StoreReports, AFailingAttackRowTakesTheWholeMailBack)
{
    TempStore store;
    store.db.insert_field_report(u"f"_s, field_fight({u"Old"_s}), 1.0);
    const QString before = store_dump(store.db);
    auto without_id = field_fight({u"Bo"_s, u"Cy"_s});
    without_id[1] = QVariantMap{{u"enemy_name"_s, u"Cy"_s}};
    auto twice = field_fight({u"Bo"_s, u"Cy"_s});
    twice[1] = twice[0];
    for (const auto &attacks : {without_id, twice, data::FieldReport{QVariant(5)}}) {
        EXPECT_THAT(failure_of([&] { store.db.insert_field_report(u"f"_s, attacks, 1.0); }),
                    StartsWith("TallyDb fatal: insert_field_report exec failed: "));
        EXPECT_EQ(store_dump(store.db), before);
    }
    store.db.insert_field_report(u"f"_s, field_fight({u"New"_s, u"Newer"_s}), 1.0);
    EXPECT_EQ(store.db.field_report_count(), 2);
}

TEST(StoreReports, AnEmptyFieldFightKeepsTheMailsRowsAndAnEmptyChainRemovesThem)
{
    TempStore store;
    store.db.insert_field_report(u"a"_s, field_fight({u"Bo"_s}), 1.0);
    store.db.insert_report(u"a"_s, battle(1.0, {battle_round(1.0, {item(1, 2, 3)})}), 1.0);
    store.db.insert_field_report(u"a"_s, {}, 1.0);
    store.db.insert_report(u"a"_s, battle(1.0, {}), 1.0);
    EXPECT_TRUE(store.db.field_report_exists(u"a"_s));
    EXPECT_FALSE(store.db.report_exists(u"a"_s));
    EXPECT_EQ(text(store, u"SELECT count(*) FROM loot"_s), u"0"_s);
}

TEST(StoreReports, EveryFieldOfATrialReachesItsColumn)
{
    TempStore store;
    data::TrialReport report;
    report.mail_id = u"m1"_s;
    report.boss_name = u"Pięść"_s;
    report.npc_type = 1.5;
    report.npc_level = 2.5;
    report.tile_x = 3;
    report.event_time = 4.5;
    auto first = participant(u"Bo"_s, {item(5.0, 6.9, 7.0), item(-1.5, {}, 3e9)});
    first.player_id = 8.5;
    first.damage_rate = 0.25;
    first.order_ = 2;
    report.participants = {first, data::TrialParticipant()};
    store.db.insert_trial_report(u"t"_s, report, 9.5);
    EXPECT_EQ(text(store, u"SELECT * FROM trial_reports"_s),
              u"t|m1|Pięść|1.5|2.5|3|NULL|4.5|9.5"_s);
    EXPECT_EQ(text(store, u"SELECT file_name, player_id, quote(player_name), damage_rate, order_ "
                          "FROM trial_participants ORDER BY id"_s),
              u"t|8.5|'Bo'|0.25|2\nt|NULL|''|0|0"_s);
    EXPECT_EQ(text(store, u"SELECT player_name, item_type, item_subtype, value FROM trial_loot l "
                          "JOIN trial_participants p ON p.id = l.participant_id ORDER BY l.id"_s),
              u"Bo|5|6|7\nBo|-1|NULL|NULL"_s);
}

TEST(StoreReports, EveryFieldOfAFortReachesItsColumn)
{
    TempStore store;
    data::FortReport report;
    report.mail_id = u"m2"_s;
    report.fort_level = 1;
    report.tile_y = 2;
    report.damage_percent = 3;
    report.event_time = 4.5;
    report.loot = {item(5.9, 6.0, 7.0), item(std::nan(""), 1e10, {})};
    store.db.insert_fort_report(u"x"_s, report, 8.5);
    EXPECT_EQ(text(store, u"SELECT * FROM fort_reports"_s), u"x|m2|1|NULL|2|3|4.5|8.5|NULL"_s);
    EXPECT_EQ(text(store, u"SELECT file_name, item_type, item_subtype, value FROM fort_loot "
                          "ORDER BY id"_s),
              u"x|5|6|7\nx|NULL|NULL|NULL"_s);
}

TEST(StoreReports, AnImportReplacesItsMailsRowsAndLeavesNoOrphansNorTouchesOthers)
{
    TempStore twice;
    add_each_kind(twice.db, u"a"_s, 1.0, 3, 3);
    add_each_kind(twice.db, u"b"_s, 1.0, 4, 4);
    const QString first_ids = text(twice, u"SELECT max(id) FROM trial_participants"_s);
    add_each_kind(twice.db, u"a"_s, 1.0, 2, 2);
    TempStore once;
    add_each_kind(once.db, u"a"_s, 1.0, 2, 2);
    add_each_kind(once.db, u"b"_s, 1.0, 4, 4);
    EXPECT_EQ(store_dump(twice.path), store_dump(once.path));
    EXPECT_GT(text(twice, u"SELECT max(id) FROM trial_participants"_s), first_ids);
    EXPECT_EQ(text(twice, u"PRAGMA foreign_key_check"_s), u""_s);
}

TEST(StoreReports, ATrialWhoseLootCannotBeStoredLeavesNoHeaderBehind)
{
    TempStore store;
    store.db.insert_trial_report(u"t"_s, trial({participant(u"Old"_s, {item(1, 1, 1)})}), 1.0);
    store.db.insert_fort_report(u"x"_s, fort(1.0, {item(1, 1, 1)}), 1.0);
    const QString before = store_dump(store.db);
    for (const auto *table : {u"trial_loot", u"fort_loot"})
        text(store, u"CREATE TRIGGER fail_%1 BEFORE INSERT ON %1 WHEN NEW.value = 13 "
                    "BEGIN SELECT RAISE(ABORT, 'thirteen'); END"_s.arg(QStringView(table)));
    const std::vector<data::LootEntry> loot = {item(1, 1, 12), item(1, 1, 13)};
    for (const QString &name : {u"t"_s, u"x"_s, u"new"_s}) {
        EXPECT_THAT(failure_of([&] {
                        store.db.insert_trial_report(name, trial({participant(u"Bo"_s, loot)}),
                                                     1.0);
                    }),
                    HasSubstr("thirteen"));
        EXPECT_THAT(failure_of([&] { store.db.insert_fort_report(name, fort(1.0, loot), 1.0); }),
                    HasSubstr("exec failed for ["));
    }
    EXPECT_EQ(store_dump(store.db), before);
}
