#include "data/store/chain_statistics.h"
#include "support/chain_reference.h"
#include "support/plain_connection.h"
#include "support/print_records.h"
#include "support/random_chains.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

#include <QThread>

#include <limits>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

constexpr double barbarians = 1.0;

/// All slices by what they say, not by the order in which they were made.
QString slices(const QSqlDatabase &db)
{
    return text_of(db, u"SELECT file_name, quote(npc_btype), is_fort_round, is_free_ap, "
                       "quote(chain_start_time), quote(chain_end_time), quote(file_mtime), "
                       "quote(hero_id_1), quote(hero_id_2), quote(player_id), quote(player_name), "
                       "rounds, wins, honor, quote(fights), quote(items) "
                       "FROM chain_slices LEFT JOIN chain_slice_loot ON slice_id = id "
                       "ORDER BY 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16"_s);
}

QString stale(const QSqlDatabase &db)
{
    return text_of(db, u"SELECT file_name FROM stale_chains ORDER BY 1"_s);
}

struct SlicedStore : TempStore {
    SlicedStore()
    {
        add_random_chains(db, 7, 20);
        db.init_schema(); // so that later starts have no flags to fill in
    }
    QSqlDatabase plain() const { return db.connection(); }
};

} // namespace

TEST(HonorSince, ReadsARangeOfItsIndexWhichComesToAnOldStoreWithoutCountingAnew)
{
    SlicedStore store;
    PlainConnection(store.path).rows(u"DROP INDEX idx_slices_mail"_s);
    PlainConnection(store.path).rows(u"UPDATE chain_slices SET honor = 1000"_s);
    store.db.init_schema();
    EXPECT_EQ(stale(store.plain()), u"");
    EXPECT_GT(store.db.honor_since(0.0), 1000) << "the slices were made anew";
    EXPECT_THAT(text_of(store.plain(),
                        u"EXPLAIN QUERY PLAN"_s + data::honor_since_statement().replace(u'?', u'1'))
                    .toStdString(),
                testing::HasSubstr("SEARCH chain_slices USING COVERING INDEX idx_slices_mail"));
}

class ChainSlicesAfter : public testing::TestWithParam<const char *> {};

TEST_P(ChainSlicesAfter, AChangeByAnotherProgramAreMadeAnewForItsChainsAlone)
{
    SlicedStore store;
    const QString others = u"SELECT id FROM chain_slices WHERE file_name NOT IN "
                           "('chain 1', 'chain 2', 'other', 'chain 3') ORDER BY id"_s;
    const QString kept = text_of(store.plain(), others);
    for (const QString &sql : QString::fromLatin1(GetParam()).split(u';'))
        PlainConnection(store.path).rows(sql);
    EXPECT_NE(stale(store.plain()), u"");
    const ChainReference reference(store.plain());
    EXPECT_EQ(store.db.summary(barbarians, {}, {}, {}), reference.summary({}));

    store.db.link_fort_to_chains();
    EXPECT_EQ(stale(store.plain()), u"");
    EXPECT_EQ(text_of(store.plain(), others), kept);
    EXPECT_EQ(store.db.summary(barbarians, {}, {}, {}), reference.summary({}));
    const QString result = slices(store.plain());
    rows_of(store.plain(), u"DROP TABLE stale_chains"_s);
    store.db.init_schema();
    EXPECT_EQ(slices(store.plain()), result);
}

INSTANTIATE_TEST_SUITE_P(
    Changes, ChainSlicesAfter,
    testing::Values(
        "INSERT INTO reports (file_name, round_no, npc_btype) VALUES ('other', 0, 1)",
        "INSERT OR REPLACE INTO reports (file_name, round_no, npc_btype) VALUES ('chain 1', 0, 1)",
        "DELETE FROM reports WHERE file_name = 'chain 1'",
        "UPDATE reports SET level = 46 WHERE file_name = 'chain 2'",
        "UPDATE reports SET file_name = 'other' WHERE file_name = 'chain 1'",
        "INSERT OR ROLLBACK INTO loot (file_name, round_no, value) VALUES ('chain 1', 0, 1), "
        "('chain 1', 0, 2)",
        "DELETE FROM loot WHERE file_name IN ('chain 1', 'chain 2', 'chain 3')",
        "UPDATE loot SET value = value + 1 WHERE file_name IN ('chain 1', 'chain 2', 'chain 3')",
        "UPDATE loot SET file_name = 'chain 1' WHERE file_name IN ('chain 2', 'chain 3')",
        "INSERT OR REPLACE INTO loot (id, file_name, round_no, value) "
        "SELECT MIN(id), 'chain 1', 0, 9 FROM loot WHERE file_name = 'chain 3'",
        "UPDATE OR REPLACE loot SET id = (SELECT MIN(id) FROM loot WHERE file_name = 'chain 3') "
        "WHERE id = (SELECT MIN(id) FROM loot WHERE file_name = 'chain 2')",
        "INSERT OR REPLACE INTO reports (rowid, file_name, round_no, npc_btype) "
        "SELECT MIN(rowid), 'other', 0, 1 FROM reports WHERE file_name = 'chain 3'",
        "DELETE FROM loot WHERE file_name = 'chain 1';DELETE FROM reports "
        "WHERE file_name = 'chain 1';INSERT INTO reports (file_name, round_no) "
        "VALUES ('chain 1', 0)"));

TEST(ChainSlices, OfAnOlderDatabaseAreMadeAfterItWasOpened)
{
    SlicedStore store;
    const QString kept = slices(store.plain());
    for (const QString &trigger :
         text_of(store.plain(), u"SELECT name FROM sqlite_master WHERE type = 'trigger'"_s)
             .split(u'\n'))
        rows_of(store.plain(), u"DROP TRIGGER "_s + trigger);
    for (const char *name : {"TABLE chain_slices", "TABLE chain_slice_loot", "TABLE stale_chains",
                             "INDEX idx_reports_chain_time", "INDEX idx_reports_forts",
                             "INDEX idx_reports_unmarked_forts", "INDEX idx_fort_battle"})
        rows_of(store.plain(), u"DROP "_s + QString::fromLatin1(name));
    data::TallyDb reopened(store.path);
    EXPECT_FALSE(reopened.init_schema());
    reopened.complete_chain_slices();
    EXPECT_EQ(slices(reopened.connection()), kept);
    const QString schema = u"SELECT type, name, sql FROM sqlite_master "
                           "WHERE name NOT LIKE 'sqlite_%' ORDER BY name"_s;
    EXPECT_EQ(text_of(reopened.connection(), schema), text_of(TempStore().db.connection(), schema));
}

TEST(ChainSlices, OfManyChainsAreCompletedInStepsOutsideTheStart)
{
    SlicedStore store;
    add_random_chains(store.db, 8, 450);
    rows_of(store.plain(), u"DROP TABLE chain_slices"_s);
    store.db.init_schema();
    EXPECT_NE(slices(store.plain()), u"");
    const auto left = [&store] {
        return text_of(store.plain(), u"SELECT COUNT(*) FROM stale_chains"_s).toInt();
    };
    EXPECT_GT(left(), 100);
    const std::atomic<bool> cancelled = true;
    store.db.complete_chain_slices(&cancelled);
    const int before = left();
    EXPECT_GT(before, 100);
    EXPECT_EQ(store.db.complete_chain_slices(10), before - 10);
    EXPECT_EQ(store.db.stale_chain_count(), before - 10);
    store.db.complete_chain_slices();
    EXPECT_EQ(stale(store.plain()), u"");
    EXPECT_EQ(store.db.summary(barbarians, {}, {}, {}), ChainReference(store.plain()).summary({}));
}

class ChainSlicesWith : public testing::TestWithParam<const char *> {};

TEST_P(ChainSlicesWith, ValuesThatAreNoNumbersTakeThemForMissing)
{
    SlicedStore store;
    PlainConnection(store.path).rows(QString::fromLatin1(GetParam()));
    store.db.complete_chain_slices();
    EXPECT_EQ(stale(store.plain()), u"");
    const ChainReference reference(store.plain());
    for (const std::optional<double> from : {std::optional<double>(), std::optional(3600.0)}) {
        const ChainQuestion question{1.0, from, {}, {}, {}};
        EXPECT_EQ(store.db.summary(barbarians, from, {}, {}), reference.summary(question));
        EXPECT_EQ(store.db.best_chain(barbarians, from, {}, {}), reference.best_chain(question));
        EXPECT_EQ(store.db.hourly(barbarians, from, {}, {}),
                  reference.hourly(question, QTimeZone::systemTimeZone()));
    }
    std::map<double, int> chains;
    for (const data::PlayerRow &player : store.db.players())
        chains[player.player_id.value_or(-1.0)] = player.n;
    EXPECT_EQ(chains, reference.chains_of_players());
    EXPECT_EQ(store.db.honor_since(0.0), reference.honor_since(0.0));
}

INSTANTIATE_TEST_SUITE_P(
    OddValues, ChainSlicesWith,
    testing::Values("UPDATE reports SET chain_start_time = 'soon' WHERE round_no = 0",
                    "UPDATE reports SET file_mtime = x'31', chain_start_time = NULL",
                    "UPDATE reports SET chain_end_time = '9 o''clock' WHERE round_no < 2",
                    "UPDATE reports SET player_id = 'me', player_name = x'41' WHERE round_no = 1",
                    "UPDATE reports SET is_free_ap = 'yes', is_fort_round = x'01'",
                    "UPDATE reports SET round_no = round_no + 0.5",
                    "UPDATE reports SET round_no = 'r' || round_no",
                    "UPDATE loot SET round_no = round_no + 0.25 WHERE round_no = 0",
                    "UPDATE reports SET npc_btype = 'boss', npc_ctid = 'one' WHERE round_no = 1",
                    "UPDATE reports SET level = 'x'", "UPDATE loot SET value = '5 pieces'",
                    "UPDATE reports SET file_name = CAST(file_name AS BLOB)",
                    "UPDATE reports SET file_name = CAST(x'ff2061' AS TEXT) "
                    "WHERE file_name = 'chain 1'"));

TEST(ChainSlices, OfRoundsOfManyTypesAreOneATypeAndNaNIsNoType)
{
    TempStore store;
    std::vector<data::BattleRound> rounds(20'000, battle_round(1.0));
    for (data::BattleRound &round : rounds)
        round.npc_btype = std::numeric_limits<double>::quiet_NaN();
    for (int type = 0; type < 5'000; ++type)
        rounds[static_cast<std::size_t>(type)].npc_btype = type;
    store.db.insert_report(u"chain"_s, battle(1.0, std::move(rounds)), 1.0);
    EXPECT_EQ(text_of(store.db.connection(),
                      u"SELECT COUNT(*), SUM(rounds), MAX(rounds) FROM chain_slices"_s),
              u"5001|20000|15000");
}

TEST(ChainSlices, KeepNamesThatBeginWithAByteOrderMark)
{
    TempStore store;
    const QSqlDatabase db = store.db.connection();
    for (const QString &mark : {u"\uFEFF"_s, u"\uFFFE"_s, QString()}) {
        auto chain = battle(1.0, {battle_round(1.0)});
        chain.player_name = mark + u"Ada"_s;
        store.db.insert_report(mark + u"chain"_s, chain, 1.0);
        EXPECT_TRUE(store.db.report_exists(mark + u"chain"_s));
    }
    const QString names = u"SELECT hex(player_name), hex(file_name) FROM %1 ORDER BY 1"_s;
    EXPECT_EQ(text_of(db, names.arg(u"reports")),
              u"416461|636861696E\nEFBBBF416461|EFBBBF636861696E\nEFBFBE416461|EFBFBE636861696E");
    EXPECT_EQ(text_of(db, names.arg(u"chain_slices")), text_of(db, names.arg(u"reports")));
    rows_of(db, u"UPDATE reports SET level = 45"_s);
    store.db.complete_chain_slices();
    EXPECT_EQ(text_of(db, names.arg(u"chain_slices")), text_of(db, names.arg(u"reports")));
}

TEST(ChainSlices, FollowATableThatAnotherProgramMakesAnewUnderTheRunningOne)
{
    SlicedStore store;
    const auto expect_right = [&store] {
        EXPECT_EQ(store.db.summary(barbarians, {}, {}, {}),
                  ChainReference(store.plain()).summary({}));
    };
    expect_right();
    {
        const PlainConnection other(store.path);
        for (const QString &sql : {u"CREATE TABLE copy AS SELECT * FROM loot WHERE id % 2 = 0"_s,
                                   u"DROP TABLE loot"_s, u"ALTER TABLE copy RENAME TO loot"_s})
            other.rows(sql);
    }
    expect_right();
    store.db.link_fort_to_chains();
    PlainConnection(store.path).rows(u"DELETE FROM loot WHERE id % 4 = 0"_s);
    EXPECT_NE(stale(store.plain()), u"") << "without triggers";
    expect_right();
}

TEST(ChainSlices, AreCountedAgainstTheRowsAfterAStart)
{
    SlicedStore store;
    {
        const PlainConnection other(store.path);
        const auto triggers = other.rows(
            u"SELECT name, sql FROM sqlite_master WHERE type = 'trigger' AND name LIKE 'stale%'"_s);
        for (const QStringList &trigger : triggers)
            other.rows(u"DROP TRIGGER "_s + trigger.at(0));
        other.rows(u"DELETE FROM loot WHERE file_name = 'chain 3'"_s);
        other.rows(u"DELETE FROM reports WHERE file_name = 'chain 2'"_s);
        for (const QStringList &trigger : triggers)
            other.rows(trigger.at(1));
    }
    data::TallyDb again(store.path);
    again.init_schema();
    again.complete_chain_slices();
    EXPECT_EQ(again.summary(barbarians, {}, {}, {}), ChainReference(store.plain()).summary({}));
}

TEST(ChainSlices, GoWithTheRoundsThatAMigrationDrops)
{
    SlicedStore store;
    rows_of(store.plain(), u"DROP TABLE reports"_s);
    rows_of(store.plain(), u"CREATE TABLE reports (file_name TEXT PRIMARY KEY)"_s);
    EXPECT_TRUE(store.db.init_schema());
    EXPECT_EQ(slices(store.plain()), u"");
    EXPECT_EQ(store.db.chain_file_count(), 0);
    store.db.insert_report(u"chain"_s, battle(1.0, {battle_round(1.0)}), 1.0);
    EXPECT_EQ(store.db.summary(barbarians, {}, {}, {}).battles, 1);
}

TEST(ChainSlices, ARoundThatIsMarkedByALinkCountsNoMore)
{
    TempStore store;
    store.db.insert_report(u"chain"_s, battle(1000.0, {battle_round(5.0), battle_round(1.0)}), 1.0);
    EXPECT_EQ(store.db.summary(barbarians, {}, {}, {}).battles, 2);
    store.db.insert_fort_report(u"fort"_s, fort(1000.0), 1.0);
    ASSERT_EQ(store.db.link_fort_to_chains(), 1);
    EXPECT_EQ(stale(store.db.connection()), u"");
    EXPECT_EQ(store.db.summary(barbarians, {}, {}, {}).battles, 1);
}

class ChangeStampAfter : public testing::TestWithParam<const char *> {};

TEST_P(ChangeStampAfter, AChangeOfAReportByAnyoneIsAnother)
{
    TempStore store;
    add_each_kind(store.db, u"mail"_s, 1.0, 1, 1);
    const auto before = store.db.change_stamp();
    PlainConnection(store.path).rows(QString::fromLatin1(GetParam()));
    EXPECT_NE(store.db.change_stamp(), before);
    store.db.complete_chain_slices();
    const auto complete = store.db.change_stamp();
    EXPECT_NE(complete, before);
    EXPECT_EQ(store.db.change_stamp(), complete);
    for (const QString &sql : {u"BEGIN"_s, u"DELETE FROM trial_reports"_s, u"ROLLBACK"_s})
        rows_of(store.db.connection(), sql);
    EXPECT_EQ(store.db.change_stamp(), complete);
}

INSTANTIATE_TEST_SUITE_P(
    Reports, ChangeStampAfter,
    testing::Values(
        "UPDATE reports SET is_fort_round = 1", "UPDATE loot SET value = 9",
        "INSERT INTO loot (file_name, value) VALUES ('of no chain', 1)", "DELETE FROM loot",
        "INSERT INTO field_reports (file_name, attack_id) VALUES ('f', 1)",
        "DELETE FROM field_reports", "UPDATE field_reports SET email_box = 'Archive'",
        "DELETE FROM trial_reports", "UPDATE trial_reports SET boss_name = 'x'",
        "INSERT OR REPLACE INTO trial_reports (file_name) VALUES ('mail')",
        "UPDATE trial_participants SET player_name = 'x'", "DELETE FROM trial_participants",
        "INSERT INTO trial_participants (file_name) VALUES ('mail')",
        "UPDATE trial_loot SET value = 9", "DELETE FROM trial_loot",
        "INSERT INTO trial_loot (participant_id) VALUES (1)",
        "UPDATE fort_reports SET battle_file_name = 'x'", "DELETE FROM fort_reports",
        "INSERT INTO fort_reports (file_name) VALUES ('f')", "UPDATE fort_loot SET value = 9",
        "DELETE FROM fort_loot", "INSERT INTO fort_loot (file_name) VALUES ('mail')",
        "DROP TRIGGER count_fort_loot_insert"));

TEST(RememberedResults, OutliveWhatIsNoReport)
{
    TempStore store;
    store.db.insert_report(u"chain"_s, battle(1.0, {battle_round(1.0)}), 1.0);
    const auto battles = [&store] {
        return store.db.summary(barbarians, {}, {}, {}).battles;
    };
    EXPECT_EQ(battles(), 1);
    store.db.link_fort_to_chains(); // the first makes a table for the planner
    EXPECT_EQ(battles(), 1);
    // Nobody notes this change, so that it shows who reads the store again.
    rows_of(store.db.connection(), u"UPDATE chain_slices SET rounds = 7"_s);
    const auto before = store.db.change_stamp();
    store.db.set_setting(u"overlay_x"_s, u"3"_s);
    store.db.log_honor_summary({}, {}, {}, {}, {}, {}, {});
    store.db.note_examined({{u"chain"_s, {}, {}}});
    store.db.link_fort_to_chains();
    PlainConnection(store.path).rows(u"DELETE FROM settings"_s);
    EXPECT_EQ(store.db.change_stamp(), before);
    EXPECT_EQ(battles(), 1);
    store.db.insert_report(u"chain"_s, battle(1.0, {battle_round(1.0), battle_round(2.0)}), 1.0);
    EXPECT_EQ(battles(), 2);
}

TEST(RememberedResults, EndWithAnyChangeOfTheReportsAndBelongToTheirQuestion)
{
    TempStore store;
    const auto battles = [&store] {
        return store.db.summary(barbarians, {}, {}, {}).battles;
    };
    const auto insert = [&store](const QString &name) {
        store.db.insert_report(name, battle(1.0, {battle_round(1.0)}), 1.0);
    };
    insert(u"own"_s);
    EXPECT_EQ(battles(), 1);
    EXPECT_EQ(battles(), 1);
    insert(u"own again"_s);
    EXPECT_EQ(battles(), 2);
    const std::unique_ptr<QThread> other(QThread::create([&] { insert(u"other thread"_s); }));
    other->start();
    ASSERT_TRUE(other->wait());
    EXPECT_EQ(battles(), 3);
    PlainConnection(store.path).rows(u"DELETE FROM reports WHERE file_name = 'own'"_s);
    EXPECT_EQ(battles(), 2);
    rows_of(store.db.connection(), u"DELETE FROM reports WHERE file_name = 'own again'"_s);
    EXPECT_EQ(battles(), 1);
    rows_of(store.db.connection(), u"BEGIN"_s);
    rows_of(store.db.connection(), u"DELETE FROM reports"_s);
    EXPECT_EQ(battles(), 0);
    rows_of(store.db.connection(), u"ROLLBACK"_s);
    EXPECT_EQ(battles(), 1) << "a result of changes that were undone";
    EXPECT_EQ(store.db.summary(barbarians + 1.0, {}, {}, {}).battles, 0);
    store.db.free_ap_mode = 2;
    EXPECT_EQ(battles(), 0) << "the result of another question";
}
