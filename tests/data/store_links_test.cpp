#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

/// A store with one fort mail at 10,000 s.
struct FortStore : TempStore {
    FortStore() { db.insert_fort_report(u"fort"_s, fort(10000.0), 1.0); }

    void add_chain(const QString &name, std::optional<double> start, bool marked = false)
    {
        auto round = battle_round(1.0);
        round.is_fort_round = marked ? 1 : 0;
        db.insert_report(name, battle(start, {round}), 1.0);
    }
    QString link() const
    {
        return text_of(db.connection(), u"SELECT battle_file_name FROM fort_reports "
                                        "WHERE file_name = 'fort'"_s);
    }
    /// "fort round, free round" of each round in order.
    QString flags(const QString &chain) const
    {
        return text_of(db.connection(), u"SELECT is_fort_round, is_free_ap FROM reports "
                                        "WHERE file_name = '%1' ORDER BY round_no"_s.arg(chain));
    }
};

} // namespace

TEST(StoreLinks, AMarkedChainWinsOverANearerOne)
{
    FortStore store;
    store.add_chain(u"near"_s, 9900.0);
    store.add_chain(u"far"_s, 10299.0, true);
    store.add_chain(u"marked"_s, 10250.0, true);
    EXPECT_EQ(store.db.link_fort_to_chains(), 1);
    EXPECT_EQ(store.link(), u"marked");
    EXPECT_EQ(store.flags(u"near"_s), u"0|0");
}

TEST(StoreLinks, OfUnmarkedChainsTheNearestWins)
{
    FortStore store;
    store.add_chain(u"before"_s, 9800.0);
    store.add_chain(u"after"_s, 10100.0);
    store.add_chain(u"marked too far away"_s, 10301.0, true);
    EXPECT_EQ(store.db.link_fort_to_chains(), 1);
    EXPECT_EQ(store.link(), u"after");
}

struct LinkEdge {
    double start;
    bool links;
};

void PrintTo(const LinkEdge &edge, std::ostream *out)
{
    *out << edge.start;
}

class StoreLinkEdge : public testing::TestWithParam<LinkEdge> {};

TEST_P(StoreLinkEdge, ThreeHundredSecondsAreIncluded)
{
    FortStore store;
    store.add_chain(u"chain"_s, GetParam().start);
    EXPECT_EQ(store.db.link_fort_to_chains(), GetParam().links ? 1 : 0);
    EXPECT_EQ(store.link(), GetParam().links ? u"chain"_s : u"NULL"_s);
}

INSTANTIATE_TEST_SUITE_P(Edges, StoreLinkEdge,
                         testing::Values(LinkEdge{9700.0, true}, LinkEdge{9699.5, false},
                                         LinkEdge{10300.0, true}, LinkEdge{10300.5, false}));

TEST(StoreLinks, AFortWithoutAChainIsLookedAtAgain)
{
    FortStore store;
    EXPECT_EQ(store.db.link_fort_to_chains(), 0);
    store.add_chain(u"late"_s, 10010.0);
    EXPECT_EQ(store.db.link_fort_to_chains(), 1);
    store.add_chain(u"nearer"_s, 10001.0);
    EXPECT_EQ(store.db.link_fort_to_chains(), 0);
    EXPECT_EQ(store.link(), u"late");
}

TEST(StoreLinks, TheFileTimeStandsInForAMissingStart)
{
    FortStore store;
    store.db.insert_report(u"started"_s, battle(500.0, {battle_round(1.0)}), 10000.0);
    store.db.insert_report(u"unknown"_s, battle({}, {battle_round(1.0)}), 10200.0);
    EXPECT_EQ(store.db.link_fort_to_chains(), 1);
    EXPECT_EQ(store.link(), u"unknown");
}

TEST(StoreLinks, TheRoundWithTheMostDamageBecomesTheFortRoundAndTheOthersFree)
{
    FortStore store;
    store.db.insert_report(u"chain"_s,
                           battle(10000.0, {battle_round({}), battle_round(7.0), battle_round(9.0),
                                            battle_round(9.0)}),
                           1.0);
    EXPECT_EQ(store.db.link_fort_to_chains(), 1);
    EXPECT_THAT(store.flags(u"chain"_s),
                testing::AnyOf(u"0|1\n0|1\n1|0\n0|1"_s, u"0|1\n0|1\n0|1\n1|0"_s));
}

TEST(StoreLinks, TheRoundsOfAMarkedChainKeepTheirFlags)
{
    FortStore store;
    auto fort_round = battle_round(1.0);
    fort_round.is_fort_round = 1;
    store.db.insert_report(u"chain"_s, battle(10000.0, {battle_round(9.0), fort_round}), 1.0);
    EXPECT_EQ(store.db.link_fort_to_chains(), 1);
    EXPECT_EQ(store.flags(u"chain"_s), u"0|0\n1|0");
}

TEST(StoreLinks, AnEmptyLinkCountsAsNoneAndAFortWithoutATimeStaysUnlinked)
{
    FortStore store;
    store.db.insert_fort_report(u"timeless"_s, fort(std::nan("")), 1.0);
    rows_of(store.db.connection(), u"UPDATE fort_reports SET battle_file_name = ''"_s);
    store.add_chain(u"chain"_s, 10000.0);
    store.add_chain(u"epoch"_s, 0.0);
    EXPECT_EQ(store.db.link_fort_to_chains(), 1);
    EXPECT_EQ(store.link(), u"chain");
    EXPECT_EQ(store.flags(u"epoch"_s), u"0|0");
}

TEST(StoreLinks, SeveralFortsMayShareAChain)
{
    FortStore store;
    store.db.insert_fort_report(u"second"_s, fort(10020.0), 1.0);
    store.add_chain(u"chain"_s, 10010.0);
    EXPECT_EQ(store.db.link_fort_to_chains(), 2);
    EXPECT_EQ(
        text_of(store.db.connection(), u"SELECT DISTINCT battle_file_name FROM fort_reports"_s),
        u"chain");
}

TEST(StoreLinks, AChainThatIsStoredAgainIsMarkedAgain)
{
    FortStore store;
    store.add_chain(u"chain"_s, 10000.0);
    store.db.link_fort_to_chains();
    store.add_chain(u"chain"_s, 10000.0);
    EXPECT_EQ(store.flags(u"chain"_s), u"0|0");
    EXPECT_EQ(store.db.link_fort_to_chains(), 1);
    EXPECT_EQ(store.flags(u"chain"_s), u"1|0");
}
