#include "support/chain_reference.h"
#include "support/plain_connection.h"
#include "support/print_records.h"
#include "support/random_chains.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gtest/gtest.h>

#include <QThread>

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
    rows_of(store.plain(), u"UPDATE loot SET value = '5 pieces' WHERE id = "
                           "(SELECT MIN(id) FROM loot WHERE file_name = 'chain 10')"_s);
    rows_of(store.plain(), u"DROP TABLE chain_slices"_s);
    store.db.init_schema();
    EXPECT_NE(slices(store.plain()), u"");
    const auto left = [&store] {
        return text_of(store.plain(), u"SELECT COUNT(*) FROM stale_chains"_s).toInt();
    };
    EXPECT_GT(left(), 100);
    const std::atomic<bool> cancelled = true;
    store.db.complete_chain_slices(&cancelled);
    EXPECT_GT(left(), 100);
    store.db.complete_chain_slices();
    EXPECT_EQ(stale(store.plain()), u"chain 10");
    const ChainReference reference(store.plain());
    EXPECT_EQ(store.db.summary(barbarians, {}, {}, {}), reference.summary({}));
    rows_of(store.plain(), u"UPDATE loot SET value = 5 WHERE value = '5 pieces'"_s);
    store.db.complete_chain_slices();
    EXPECT_EQ(stale(store.plain()), u"");
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

TEST(RememberedResults, EndWithAnyChangeOfTheStoreAndBelongToTheirQuestion)
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
