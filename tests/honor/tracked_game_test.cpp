#include "data/store/tally_db.h"
#include "honor/honor_summary_service.h"
#include "honor/real_game.h"
#include "queries/store_queries.h"
#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace tally::honor {
namespace {

using namespace tally::test;
using namespace Qt::StringLiterals;

constexpr int bound_ms = 60'000;

/// The tracker on a real process, whose reports lie in a store.
class TrackedGame : public RealGame {
protected:
    void SetUp() override
    {
        RealGame::SetUp();
        if (IsSkipped())
            return;
        auto report = battle(1.0, {battle_round(1.0)});
        report.player_name = QString::fromUtf8(player_name);
        store_.db.insert_report(u"first"_s, report, 1.0);
        store_.db.insert_field_report(
            u"field"_s,
            field_fight({QString::fromUtf8(first_enemy), QString::fromUtf8(second_enemy)}), 1.0);
        host_ = std::make_unique<WatchedHost>(display());
        host_->on_read = [] {
        };
        service_ = std::make_unique<HonorSummaryService>(
            store_.db, queries_, std::make_shared<GameMemoryReader>(*host_, QString()));
        QObject::connect(&*service_, &HonorSummaryService::stateChanged,
                         [this](const QString &text) { states_ << text; });
    }

    /// Waits until a reading ends. \return what was said last
    QString outcome()
    {
        const auto has_ended = [this] {
            return states_.size() > 1 && !service_->snapshot().running;
        };
        EXPECT_TRUE(QTest::qWaitFor(has_ended, bound_ms)) << states_.join(u'\n').toStdString();
        return states_.isEmpty() ? QString() : std::exchange(states_, {}).back();
    }

    TempStore store_;
    queries::StoreQueries queries_{store_.db};
    std::unique_ptr<WatchedHost> host_;
    std::unique_ptr<HonorSummaryService> service_;
    QStringList states_;
};

TEST_F(TrackedGame, IsReconciledWithTheReportsImportedBetweenTwoReadings)
{
    GameProcess game{*session, {}};
    ASSERT_TRUE(game.ready());
    service_->start();
    EXPECT_TRUE(outcome().endsWith(u"FRESH!"_s));
    const HonorSnapshot first = service_->snapshot();
    EXPECT_EQ(first.base_honor, 1'284'234);
    EXPECT_EQ(first.rank, 500);
    ASSERT_EQ(first.leaderboard.size(), 1'000U);

    const auto won = battle_round(1.0, {item(1.0, 2.0, 3.0)});
    store_.db.insert_report(u"since"_s, battle(1.0, {won, won, won}), *first.base_ts + 0.5);
    EXPECT_EQ(service_->snapshot().estimated, 1'284'264);
    const auto targets = service_->overtake_targets(3);
    ASSERT_EQ(targets.size(), 3U);
    EXPECT_EQ(targets.back().rank, 499);
    EXPECT_EQ(targets.back().gap, 1'234 - 30);

    ASSERT_TRUE(game.tell("add 100"));
    QSignalSpy reconciled(&*service_, &HonorSummaryService::reconciled);
    service_->trigger_sync();
    EXPECT_TRUE(outcome().endsWith(u"FRESH!"_s));
    EXPECT_EQ(reconciled, (QList<QList<QVariant>>{{70}}));
    EXPECT_EQ(service_->snapshot().base_honor, 1'284'334);
    EXPECT_EQ(text_of(store_.db.connection(),
                      u"SELECT base_honor, new_honor, delta_reports, estimated, discrepancy "
                      "FROM honor_summary_log"_s),
              u"1284234|1284334|30|1284264|70"_s);
}

TEST_F(TrackedGame, KilledInTheMiddleOfAReadLeavesTheEstimateAsItWas)
{
    GameProcess game{*session, {u"--noise-mib"_s, u"16"_s}};
    ASSERT_TRUE(game.ready());
    service_->start();
    outcome();
    std::atomic<int> reads = 0;
    QSemaphore in_the_middle;
    QSemaphore killed;
    host_->on_read = [&] {
        if (++reads == 40) {
            in_the_middle.release();
            killed.tryAcquire(1, bound_ms);
        }
    };
    service_->trigger_sync();
    ASSERT_TRUE(in_the_middle.tryAcquire(1, bound_ms));
    game.kill();
    killed.release();
    EXPECT_EQ(outcome(), u"No data - open Honor Roll in game"_s);
    ASSERT_TRUE(game_has_left(*host_));
    service_->trigger_sync();
    EXPECT_EQ(outcome(), u"Game not running"_s);
    EXPECT_EQ(service_->snapshot().estimated, 1'284'234);
}

TEST_F(TrackedGame, AStopInTheMiddleOfAReadEndsItAndLetsTheGameGo)
{
    GameProcess game{*session, {u"--noise-mib"_s, u"64"_s}};
    ASSERT_TRUE(game.ready());
    std::atomic<int> reads = 0;
    QSemaphore in_the_middle;
    QSemaphore stopping;
    host_->on_read = [&] {
        if (++reads == 20) {
            in_the_middle.release();
            stopping.tryAcquire(1, bound_ms);
        }
    };
    service_->start();
    const auto has_begun = [&in_the_middle] {
        return in_the_middle.tryAcquire();
    };
    ASSERT_TRUE(QTest::qWaitFor(has_begun, bound_ms));
    service_->request_end();
    stopping.release();
    EXPECT_TRUE(service_->wait_until(QDeadlineTimer(bound_ms)));
    EXPECT_EQ(reads, 20);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !service_->snapshot().running; }, bound_ms));
}

} // namespace
} // namespace tally::honor
