#include "queries/query_thread.h"
#include "support/window_fixture.h"

#include <QSemaphore>
#include <QThread>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class QueryThread : public testing::Test {
protected:
    /// Asks a question whose answer is its number, placed in `placed_`.
    void ask(ui::QueryThread &queries, int number)
    {
        queries.ask([this, number](const auto &) {
            return [this, number] {
                placed_.push_back(number);
            };
        });
    }

    /// The same, but not answered before `let_go_` is released.
    void ask_slowly(ui::QueryThread &queries, int number)
    {
        queries.ask([this, number](const auto &is_outdated) {
            begun_.release();
            let_go_.acquire();
            was_outdated_ = is_outdated();
            return [this, number] {
                placed_.push_back(number);
            };
        });
    }

    std::vector<int> placed_;
    QSemaphore begun_;
    QSemaphore let_go_;
    std::atomic<bool> was_outdated_ = false;
};

} // namespace

TEST_F(QueryThread, AnAnswerThatComesSoonIsPlacedAtOnce)
{
    ui::QueryThread queries(1h, nullptr);
    QSignalSpy busy(&queries, &ui::QueryThread::busyChanged);
    ask(queries, 1);
    ask(queries, 2);
    EXPECT_THAT(placed_, ElementsAre(1, 2));
    QCoreApplication::processEvents(); // nothing is placed twice
    EXPECT_THAT(placed_, ElementsAre(1, 2));
    EXPECT_TRUE(busy.isEmpty());
}

TEST_F(QueryThread, AnAnswerThatComesLateIsPlacedWhenItComes)
{
    ui::QueryThread queries(0ms, nullptr);
    QSignalSpy busy(&queries, &ui::QueryThread::busyChanged);
    ask_slowly(queries, 1);
    EXPECT_TRUE(queries.busy());
    EXPECT_THAT(placed_, IsEmpty());
    let_go_.release();
    EXPECT_TRUE(wait_until([&] { return !queries.busy(); }));
    EXPECT_THAT(placed_, ElementsAre(1));
    EXPECT_FALSE(was_outdated_);
    EXPECT_EQ(busy, (QList<QList<QVariant>>{{true}, {false}}));
}

TEST_F(QueryThread, TheLastQuestionWins)
{
    ui::QueryThread queries(0ms, nullptr);
    ask_slowly(queries, 1);
    begun_.acquire();
    ask(queries, 2); // is replaced while it waits
    ask(queries, 3);
    let_go_.release();
    EXPECT_TRUE(wait_until([&] { return !queries.busy(); }));
    EXPECT_TRUE(was_outdated_);
    EXPECT_THAT(placed_, ElementsAre(3));
}

TEST_F(QueryThread, AFailedQueryPlacesNothing)
{
    ui::QueryThread queries(1h, nullptr);
    queries.ask([](const auto &) -> ui::QueryThread::Placing { throw std::runtime_error("why"); });
    EXPECT_FALSE(queries.busy());
    ask(queries, 2);
    EXPECT_THAT(placed_, ElementsAre(2));
}

TEST_F(QueryThread, AllQuestionsAreAnsweredByOneThread)
{
    ui::QueryThread queries(1h, nullptr);
    std::vector<QThread *> threads = {QThread::currentThread()};
    for (int i = 0; i < 2; ++i) {
        queries.ask([&threads](const auto &) {
            return [&threads, thread = QThread::currentThread()] {
                threads.push_back(thread);
            };
        });
    }
    ASSERT_EQ(threads.size(), 3U);
    EXPECT_NE(threads[0], threads[1]);
    EXPECT_EQ(threads[1], threads[2]);
}

TEST_F(QueryThread, ItsEndIsThatOfTheQueryThatRuns)
{
    ui::QueryThread queries(0ms, nullptr);
    ask_slowly(queries, 1);
    begun_.acquire();
    EXPECT_FALSE(queries.end(QDeadlineTimer(0)));
    let_go_.release();
    EXPECT_TRUE(queries.end(QDeadlineTimer(QDeadlineTimer::Forever)));
    ask(queries, 2);
    QCoreApplication::processEvents();
    EXPECT_THAT(placed_, IsEmpty());
    EXPECT_FALSE(queries.busy());
}
