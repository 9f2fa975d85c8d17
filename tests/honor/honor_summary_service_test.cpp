#include "data/store/tally_db.h"
#include "honor/honor_summary_service.h"
#include "honor/scripted_reader.h"
#include "queries/store_queries.h"
#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <QTest>

#include <gmock/gmock.h>

#include <stdexcept>

namespace tally::honor {
namespace {

using namespace tally::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int bound_ms = 30'000;

class HonorService : public testing::Test {
protected:
    HonorService() { listen(); }

    /// The service tells everything to `told`, in the order in which it comes.
    void listen()
    {
        const auto note = [this](const QString &what) {
            told_ << what;
        };
        QObject::connect(&*service_, &HonorSummaryService::stateChanged, note);
        QObject::connect(&*service_, &HonorSummaryService::syncStarted,
                         [note] { note(u"started"_s); });
        QObject::connect(&*service_, &HonorSummaryService::syncFailed,
                         [note](const QString &why) { note(u"failed:%1"_s.arg(why.size())); });
        QObject::connect(&*service_, &HonorSummaryService::adminRequired,
                         [note] { note(u"admin"_s); });
        QObject::connect(&*service_, &HonorSummaryService::gameNotFound,
                         [note] { note(u"no game"_s); });
        QObject::connect(&*service_, &HonorSummaryService::reconciled,
                         [note](int off) { note(u"off by %1"_s.arg(off)); });
        QObject::connect(&*service_, &HonorSummaryService::honorUpdated,
                         [note](auto base, int delta, auto estimated, auto since, const auto &roll,
                                auto rank, auto, const QString &player) {
                             note(u"%1 + %2 = %3 since %4: %5 of %6 is %7"_s.arg(*base)
                                      .arg(delta)
                                      .arg(*estimated)
                                      .arg(*since)
                                      .arg(*rank)
                                      .arg(roll.size())
                                      .arg(player));
                         });
    }

    void import(const QString &mail, double time, int rounds)
    {
        const auto won = battle_round(1.0, {item(1.0, 2.0, 3.0)}); // worth 10
        store_.db.insert_report(
            mail,
            battle(time, std::vector<data::BattleRound>(static_cast<std::size_t>(rounds), won)),
            time);
    }
    void import_people()
    {
        import(u"first"_s, 1.0, 1);
        store_.db.insert_field_report(u"field"_s, field_fight({u"Grim"_s, u"Vole"_s, u"Grim"_s}),
                                      1.0);
    }

    bool is_idle() const { return !service_->snapshot().running; }
    /// Waits until something that starts with `text` is told. \return what was told until then.
    QStringList told_until(const QString &text)
    {
        const auto is_there = [&] {
            return !told_.filter(QRegularExpression(u"^"_s + QRegularExpression::escape(text)))
                        .isEmpty() &&
                   is_idle();
        };
        EXPECT_TRUE(QTest::qWaitFor(is_there, bound_ms)) << told_.join(u'\n').toStdString();
        return std::exchange(told_, {});
    }
    QStringList log_rows() const
    {
        return text_of(
                   store_.db.connection(),
                   u"SELECT base_timestamp, base_honor, new_timestamp, new_honor, delta_reports, "
                   "estimated, discrepancy FROM honor_summary_log ORDER BY new_timestamp"_s)
            .split(u'\n', Qt::SkipEmptyParts);
    }

    TempStore store_;
    queries::StoreQueries queries_{store_.db, 0ms};
    std::shared_ptr<ScriptedReader> reader_ = std::make_shared<ScriptedReader>();
    std::unique_ptr<HonorSummaryService> service_ =
        std::make_unique<HonorSummaryService>(store_.db, queries_, reader_, [] { return 99.0; });
    QStringList told_;
};

TEST_F(HonorService, NeedsAPlayerAndTwoEnemiesToBegin)
{
    service_->start();
    EXPECT_THAT(told_until(u"No imported reports - cannot detect player"_s), testing::SizeIs(1));
    service_->trigger_sync();
    EXPECT_THAT(told_until(u"No imported reports"_s), ElementsAre(u"No imported reports"_s));
    import(u"first"_s, 1.0, 1);
    store_.db.insert_field_report(u"field"_s, field_fight({u"Grim"_s, u"Grim"_s}), 1.0);
    service_->start();
    told_until(u"Honor Tracker needs field reports for at least 2 distinct enemies to auto-derive "
               "scan markers. Import more reports."_s);
    EXPECT_FALSE(service_->cycling());
    EXPECT_FALSE(reader_->begun.tryAcquire());

    reader_->gives(ReaderState::Ok, {});
    import_people();
    service_->start();
    EXPECT_THAT(told_until(u"No data"_s), ElementsAre(u"started"_s, u"Reading for Ada..."_s,
                                                      u"No data - open Honor Roll in game"_s));
    EXPECT_TRUE(service_->cycling());
    EXPECT_EQ(reader_->markers, (QStringList{u"Ada"_s, u"Grim"_s, u"Vole"_s}));
    service_->stop();
    EXPECT_FALSE(service_->cycling());
}

TEST_F(HonorService, EachReadingCorrectsTheEstimateThatReportsKeptCurrent)
{
    import_people();
    reader_->gives(ReaderState::Ok, read_of(500'000, 1'000.0));
    service_->start();
    EXPECT_THAT(told_until(u"Read OK"_s),
                ElementsAre(u"started"_s, u"Reading for Ada..."_s,
                            u"500000 + 0 = 500000 since 1000: 2 of 2 is Ada"_s,
                            u"Read OK (1.3s) FRESH!"_s));
    EXPECT_THAT(log_rows(), IsEmpty());

    import(u"at the base itself"_s, 1'000.0, 7);
    import(u"after it"_s, 1'001.0, 5);
    EXPECT_EQ(service_->snapshot().estimated, 500'050);
    reader_->gives(ReaderState::Ok, read_of(500'000, 1'060.0));
    service_->trigger_sync();
    EXPECT_THAT(told_until(u"Read OK"_s),
                ElementsAre(u"started"_s, u"Reading for Ada..."_s,
                            u"500000 + 50 = 500050 since 1000: 2 of 2 is Ada"_s,
                            u"Read OK (1.3s)"_s));
    EXPECT_THAT(log_rows(), IsEmpty());

    import(u"later"_s, 1'100.0, 7);
    EXPECT_EQ(service_->overtake_targets(3).at(0).gap, 600'000 - 500'120);
    reader_->gives(ReaderState::Ok, read_of(500'100, 1'120.0));
    service_->trigger_sync();
    EXPECT_THAT(told_until(u"Read OK"_s),
                ElementsAre(u"started"_s, u"Reading for Ada..."_s, u"off by -20"_s,
                            u"500100 + 0 = 500100 since 1120: 2 of 2 is Ada"_s,
                            u"Read OK (1.3s) FRESH!"_s));
    EXPECT_EQ(log_rows(), QStringList{u"1000|500000|1120|500100|120|500120|-20"_s});
}

TEST_F(HonorService, AReadingThatFailsSaysWhyAndChangesNothing)
{
    import_people();
    reader_->gives(ReaderState::Ok, read_of(500'000, 1'000.0));
    service_->start();
    told_until(u"Read OK"_s);
    import(u"since"_s, 1'001.0, 5);
    const auto fails_with = [this](auto thrown) {
        reader_->script.emplace_back(
            ReaderState::Ok,
            [thrown](const std::stop_token &) -> std::optional<ReadResult> { throw thrown; });
    };
    const std::string long_text(100, 'x');
    const struct {
        std::function<void()> script;
        QStringList told;
    } cases[] = {
        {[&] { reader_->gives(ReaderState::GameNotFound, {}); },
         {u"no game"_s, u"Game not running"_s}},
        {[&] { reader_->gives(ReaderState::NeedsAdmin, {}); },
         {u"admin"_s, u"Requires administrator privileges"_s}},
        {[&] { reader_->gives(ReaderState::OpenFailed, {}); },
         {u"No data - open Honor Roll in game"_s}},
        {[&] { reader_->gives(ReaderState::Ok, read_of({}, 1'060.0)); },
         {u"Ada not found in cache"_s}},
        {[&] { fails_with(std::runtime_error(long_text)); },
         {u"failed:100"_s, u"Error: "_s + QString(80, u'x')}},
        {[&] { fails_with(7); }, {u"failed:31"_s, u"Error: unknown exception in SyncWorker"_s}},
    };
    for (const auto &[script, told] : cases) {
        script();
        service_->trigger_sync();
        EXPECT_EQ(told_until(told.back()),
                  (QStringList{u"started"_s, u"Reading for Ada..."_s} + told));
        EXPECT_EQ(service_->snapshot().estimated, 500'050);
    }
    EXPECT_THAT(log_rows(), IsEmpty());
}

TEST_F(HonorService, ChainsThatAreStillToBeAddedUpAreNotCountedOnTheGuiThread)
{
    import_people();
    reader_->gives(ReaderState::Ok, read_of(500'000, 1'000.0));
    service_->start();
    told_until(u"Read OK"_s);
    import(u"since"_s, 1'001.0, 5);
    EXPECT_EQ(service_->snapshot().delta_reports, 50);
    const PlainConnection other(store_.path);
    const QString change = u"UPDATE reports SET level = 55 WHERE file_name = 'since'"_s;
    other.rows(change); // 20 a round, as soon as it is added up
    EXPECT_EQ(service_->snapshot().estimated, 500'050);
    EXPECT_TRUE(
        QTest::qWaitFor([this] { return service_->snapshot().estimated == 500'100; }, bound_ms));

    other.rows(change);
    reader_->gives(ReaderState::Ok, read_of(500'100, 1'120.0));
    service_->trigger_sync();
    EXPECT_THAT(told_until(u"Read OK"_s).filter(u"off"_s), ElementsAre(u"off by 0"_s));
}

TEST_F(HonorService, AStopEndsTheReadBeforeTheReaderIsDetached)
{
    import_people();
    reader_->script.emplace_back(ReaderState::Ok, read_until_stopped);
    service_->start();
    ASSERT_TRUE(QTest::qWaitFor([this] { return reader_->begun.tryAcquire(); }, bound_ms));
    service_->trigger_sync(); // dropped: one reading at a time
    service_->stop();
    EXPECT_FALSE(reader_->reading);
    EXPECT_GE(reader_->detached, 1);
    EXPECT_FALSE(reader_->disturbed);

    reader_->gives(ReaderState::Ok, read_of(500'000, 1'000.0));
    service_->start();
    const QStringList told = told_until(u"Read OK"_s);
    EXPECT_EQ(told.count(u"started"_s), 2) << told.join(u'\n').toStdString();
    EXPECT_THAT(told.filter(u"No data"_s), IsEmpty()) << "of the read that was stopped";

    service_->request_end();
    EXPECT_TRUE(service_->wait_until(QDeadlineTimer(bound_ms)));
    service_->trigger_sync();
    service_->start();
    EXPECT_FALSE(service_->snapshot().running) << "the program is leaving";
}

TEST_F(HonorService, AReadThatHangsOutlivesTheServiceWithItsReader)
{
    import_people();
    auto go_on = std::make_shared<QSemaphore>();
    reader_->script.emplace_back(ReaderState::Ok,
                                 [go_on](const std::stop_token &) -> std::optional<ReadResult> {
                                     go_on->acquire();
                                     return {};
                                 });
    service_->start();
    ASSERT_TRUE(QTest::qWaitFor([this] { return reader_->begun.tryAcquire(); }, bound_ms));
    service_.reset();
    const std::weak_ptr<ScriptedReader> left = reader_;
    reader_.reset();
    ASSERT_FALSE(left.expired());
    EXPECT_TRUE(left.lock()->reading);
    EXPECT_EQ(left.lock()->detached, 0);
    go_on->release();
    EXPECT_TRUE(QTest::qWaitFor([&left] { return left.expired(); }, bound_ms));
}

} // namespace
} // namespace tally::honor
