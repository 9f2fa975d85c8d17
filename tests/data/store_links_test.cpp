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

TEST(StoreLinks, GoToTheNearestMarkedChainElseTheNearestWithin300Seconds)
{
    const struct {
        std::vector<std::pair<double, bool>> starts; ///< and whether a round is marked
        QString link;                                ///< start of the chain that is linked
    } cases[] = {{{{9900, false}, {10299, true}, {10250, true}}, u"10250"_s},
                 {{{9800, false}, {10100, false}, {10301, true}}, u"10100"_s},
                 {{{9700, false}}, u"9700"_s},
                 {{{9699.5, false}}, u"NULL"_s},
                 {{{10300, false}}, u"10300"_s},
                 {{{10300.5, false}}, u"NULL"_s},
                 {{{9699.5, true}}, u"NULL"_s},
                 {{{10300, true}}, u"10300"_s}};
    for (const auto &[starts, link] : cases) {
        FortStore store;
        for (const auto &[start, marked] : starts)
            store.add_chain(QString::number(start), start, marked);
        EXPECT_EQ(store.db.link_fort_to_chains(), link == u"NULL" ? 0 : 1);
        EXPECT_EQ(store.link(), link);
        for (const auto &[start, marked] : starts)
            EXPECT_EQ(store.flags(QString::number(start)),
                      marked || QString::number(start) == link ? u"1|0" : u"0|0");
    }
}

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

TEST(StoreLinks, TheRoundWithTheMostDamageBecomesTheFortRoundUnlessOneIsMarked)
{
    FortStore store;
    store.db.insert_report(u"chain"_s,
                           battle(10000.0, {battle_round({}), battle_round(7.0), battle_round(9.0),
                                            battle_round(9.0)}),
                           1.0);
    EXPECT_EQ(store.db.link_fort_to_chains(), 1);
    EXPECT_THAT(store.flags(u"chain"_s),
                testing::AnyOf(u"0|1\n0|1\n1|0\n0|1"_s, u"0|1\n0|1\n0|1\n1|0"_s));
    auto fort_round = battle_round(1.0);
    fort_round.is_fort_round = 1;
    store.db.insert_report(u"marked"_s, battle(50000.0, {battle_round(9.0), fort_round}), 1.0);
    for (const QString &name : {u"second"_s, u"third of the same chain"_s})
        store.db.insert_fort_report(name, fort(50000.0), 1.0);
    EXPECT_EQ(store.db.link_fort_to_chains(), 2);
    EXPECT_EQ(store.flags(u"marked"_s), u"0|0\n1|0");
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
