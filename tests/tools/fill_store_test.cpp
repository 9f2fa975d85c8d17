#include "data/store/tally_db.h"
#include "store_filler.h"
#include "support/plain_connection.h"
#include "support/print_qt.h"
#include "support/store_dump.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

struct FilledStore {
    explicit FilledStore(int rounds, unsigned seed = 1)
    {
        tools::FillOptions options;
        options.rounds = rounds;
        options.seed = seed;
        tools::fill_store(path, options);
    }
    double number(const char *sql) const
    {
        return text_of(db.connection(), QString::fromLatin1(sql)).toDouble();
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"tally.db"_s);
    data::TallyDb db{path};
};

} // namespace

TEST(FillStore, MakesTheSharesOfRealPlayReadyToBeAsked)
{
    const FilledStore store(5003);
    EXPECT_EQ(store.number("SELECT COUNT(*) FROM reports"), 5003);
    EXPECT_EQ(store.number("SELECT COUNT(*) FROM stale_chains"), 0);
    EXPECT_EQ(store.number("SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM reports "
                           "GROUP BY file_name)"),
              10);
    EXPECT_EQ(store.number("SELECT COUNT(DISTINCT player_id) FROM reports"), 3);
    EXPECT_NEAR(store.number("SELECT (MAX(chain_start_time) - MIN(chain_start_time)) / 86400 "
                             "FROM reports"),
                730.0, 3.0);
    const double loot = store.number("SELECT COUNT(*) * 1.0 / COUNT(DISTINCT file_name || '/' || "
                                     "round_no) FROM loot");
    EXPECT_TRUE(loot > 4.3 && loot < 4.7) << loot;
    const double again = store.number("SELECT AVG(n > 1) FROM (SELECT COUNT(*) AS n "
                                      "FROM reports GROUP BY npc_ctid)");
    EXPECT_NEAR(again, 1.0 / 3.0, 0.04);
    EXPECT_EQ(store.number("SELECT COUNT(*) FROM field_reports"), 1000);
    EXPECT_EQ(store.db.trial_sessions({}, {}, {}, 0).size(), 100u);
    int forts = 0;
    store.db.fort_loot_stats({}, {}, 0, &forts);
    EXPECT_GT(forts, 20);
}

TEST(FillStore, GivesTheSameRowsForTheSameSeed)
{
    const FilledStore one(300, 5);
    EXPECT_EQ(store_dump(one.db), store_dump(FilledStore(300, 5).db));
    EXPECT_NE(store_dump(one.db), store_dump(FilledStore(300, 6).db));
}

TEST(FillStore, LeavesAFileThatIsThereAlone)
{
    const FilledStore store(10);
    EXPECT_THROW(tools::fill_store(store.path, {}), std::runtime_error);
    EXPECT_EQ(store.number("SELECT COUNT(*) FROM reports"), 10);
}
