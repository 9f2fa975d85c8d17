#include "queries/asker.h"
#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <QDeadlineTimer>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <gmock/gmock.h>

#include <stdexcept>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using queries::Asker;
using queries::Sight;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A service with a busy thread: a background question holds it until `let_go`.
class StoreQueries : public testing::Test {
protected:
    StoreQueries() { hold(); }
    ~StoreQueries() override { let_go(); }

    void hold()
    {
        holder_.ask(
            [this](const auto &, const queries::IsOutdated &is_outdated) {
                started_.release();
                gate_.acquire();
                return is_outdated();
            },
            [this](bool was_told) { holder_was_told_ = was_told; });
        started_.acquire();
    }

    void let_go() { gate_.release(100); }

    /// Asks a question whose answer is its number.
    void ask(Asker &asker, int number)
    {
        asker.ask(
            [this, number](const auto &, const auto &) {
                answered_.push_back(number);
                return number;
            },
            [this](int answer) { placed_.push_back(answer); });
    }

    static bool settled(const std::vector<const Asker *> &askers)
    {
        return QTest::qWaitFor(
            [&askers] {
                return std::ranges::none_of(askers, [](const Asker *one) { return one->busy(); });
            },
            30'000);
    }

    TempStore store_;
    QSemaphore started_;
    QSemaphore gate_;
    std::vector<int> answered_; ///< used by the thread; settled before it is looked at
    std::vector<int> placed_;
    std::optional<bool> holder_was_told_;
    queries::StoreQueries queries_{store_.db, 0ms};
    Asker holder_{queries_};
};

} // namespace

TEST_F(StoreQueries, TheLastQuestionWins)
{
    Asker one(queries_);
    QSignalSpy busy(&one, &Asker::busyChanged);
    ask(one, 1);
    ask(one, 2);
    EXPECT_THAT(placed_, IsEmpty());
    let_go();
    ASSERT_TRUE(settled({&one}));
    EXPECT_THAT(placed_, ElementsAre(2));
    EXPECT_EQ(busy, (QList<QList<QVariant>>{{true}, {false}}));
}

TEST_F(StoreQueries, TheAnswerToAQuestionThatWasReplacedIsDropped)
{
    ask(holder_, 1);
    let_go();
    ASSERT_TRUE(settled({&holder_}));
    EXPECT_THAT(placed_, ElementsAre(1));
    EXPECT_FALSE(holder_was_told_);
}

TEST_F(StoreQueries, WhoIsSeenIsServedFirstAndWhatRunsForNobodysEyesGivesWay)
{
    Asker first(queries_);
    Asker second(queries_);
    Asker seen(queries_, Sight::Seen);
    ask(second, 2);
    ask(first, 1);
    ask(seen, 3);
    let_go();
    ASSERT_TRUE(settled({&holder_, &first, &second, &seen}));
    EXPECT_THAT(answered_, ElementsAre(3, 2, 1));
    EXPECT_EQ(holder_was_told_, false) << "asked once more, not given up";
}

TEST_F(StoreQueries, AHiddenViewAsksWhenItIsSeen)
{
    Asker view(queries_, Sight::Hidden);
    Asker other(queries_);
    let_go();
    ask(view, 1);
    ask(view, 2);
    ask(other, 3);
    EXPECT_FALSE(view.busy());
    ASSERT_TRUE(settled({&other}));
    EXPECT_THAT(answered_, ElementsAre(3));
    view.set_sight(Sight::Seen);
    ASSERT_TRUE(settled({&view}));
    EXPECT_THAT(placed_, ElementsAre(3, 2));
    view.set_sight(Sight::Hidden);
    view.set_sight(Sight::Seen);
    EXPECT_FALSE(view.busy()) << "nothing has been asked since";
}

TEST_F(StoreQueries, AViewThatHidesBeforeItsTurnWaitsUntilItIsSeenAgain)
{
    Asker view(queries_, Sight::Seen);
    ask(view, 1);
    EXPECT_TRUE(view.busy());
    view.set_sight(Sight::Hidden);
    let_go();
    ASSERT_TRUE(settled({&holder_, &view}));
    EXPECT_THAT(answered_, IsEmpty());
    view.set_sight(Sight::Seen);
    ASSERT_TRUE(settled({&view}));
    EXPECT_THAT(placed_, ElementsAre(1));
}

TEST_F(StoreQueries, AViewThatGoesWaitsForNothing)
{
    auto view = std::make_unique<Asker>(queries_);
    ask(*view, 1);
    view.reset();
    auto running = std::make_unique<Asker>(queries_);
    let_go();
    QSemaphore begun;
    QSemaphore gone;
    running->ask(
        [&](const auto &, const auto &is_outdated) {
            begun.release();
            gone.acquire();
            return is_outdated();
        },
        [this](bool) { placed_.push_back(2); });
    begun.acquire();
    running.reset();
    gone.release();
    Asker last(queries_);
    ask(last, 3);
    ASSERT_TRUE(settled({&last}));
    EXPECT_THAT(placed_, ElementsAre(3));
}

TEST_F(StoreQueries, AnExceptionIsToldToWhoWantsToKnow)
{
    Asker one(queries_);
    QString failure;
    const auto break_down = [](const auto &, const auto &) -> int {
        throw std::runtime_error("why");
    };
    let_go();
    one.ask(break_down, [this](int answer) { placed_.push_back(answer); });
    ASSERT_TRUE(settled({&one}));
    one.ask(
        break_down, [this](int answer) { placed_.push_back(answer); },
        [&failure](const QString &what) { failure = what; });
    ASSERT_TRUE(settled({&one}));
    EXPECT_EQ(failure, u"why"_s);
    one.ask([](const auto &, const auto &) { return 1; },
            [](int) { throw std::runtime_error("out of a view"); });
    ASSERT_TRUE(settled({&one}));
    ask(one, 4);
    ASSERT_TRUE(settled({&one}));
    EXPECT_THAT(placed_, ElementsAre(4));
}

TEST_F(StoreQueries, TheEndIsAskedForFirstAndWaitedForLater)
{
    Asker one(queries_);
    queries_.request_end();
    EXPECT_FALSE(queries_.wait_until(QDeadlineTimer(0)));
    ask(one, 1);
    EXPECT_FALSE(one.busy());
    let_go();
    EXPECT_TRUE(queries_.wait_until(QDeadlineTimer(QDeadlineTimer::Forever)));
    QCoreApplication::processEvents();
    EXPECT_THAT(placed_, IsEmpty());
}

TEST(StoreQueriesPatience, OnlyWhoIsSeenHasTheAnswerWhenTheQuestionReturns)
{
    TempStore store;
    queries::StoreQueries queries(store.db, 1h);
    Asker seen(queries, Sight::Seen);
    QSignalSpy busy(&seen, &Asker::busyChanged);
    std::optional<QThread *> answered_by;
    seen.ask([](const auto &, const auto &) { return QThread::currentThread(); },
             [&](QThread *thread) { answered_by = thread; });
    ASSERT_TRUE(answered_by);
    EXPECT_NE(*answered_by, QThread::currentThread());
    EXPECT_TRUE(busy.isEmpty());
    QSemaphore gate;
    Asker background(queries);
    background.ask([&gate](const auto &, const auto &) { return gate.tryAcquire(1, 30'000); },
                   [](bool) {});
    EXPECT_TRUE(background.busy());
    gate.release();
}

TEST(StoreQueriesPatience, AllViewsTogetherWaitNoLongerThanOne)
{
    TempStore store;
    constexpr auto patience = 50ms;
    QSemaphore gate;
    queries::StoreQueries queries(store.db, patience);
    std::vector<std::unique_ptr<Asker>> views;
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 40; ++i) {
        views.push_back(std::make_unique<Asker>(queries, Sight::Seen));
        views.back()->ask(
            [&gate](const auto &, const auto &) { return gate.tryAcquire(1, 30'000); },
            [](bool) {});
    }
    // Far less than the 2 s that they would wait one after the other, even on a busy machine.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20 * patience);
    gate.release(40);
}

TEST(StoreQueriesSlices, ChainsThatHaveChangedAreAddedUpBeforeTheAnswer)
{
    TempStore store;
    store.db.insert_report(u"Persistent.Mail.1"_s, battle(1000.0, {battle_round(1.0)}), 1000.0);
    const PlainConnection other(store.path);
    other.rows(u"UPDATE reports SET level = 7"_s);
    const auto stale = [&other] {
        return other.rows(u"SELECT * FROM stale_chains"_s).size();
    };
    ASSERT_EQ(stale(), 1U);
    queries::StoreQueries queries(store.db, 1h);
    Asker seen(queries, Sight::Seen);
    std::optional<int> battles;
    seen.ask(
        [](const data::TallyDb &db, const auto &) { return db.summary(1.0, {}, {}, {}).battles; },
        [&battles](int answer) { battles = answer; });
    EXPECT_EQ(battles, 1);
    EXPECT_EQ(stale(), 0U);
}
