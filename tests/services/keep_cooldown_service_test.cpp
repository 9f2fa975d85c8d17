#include "services/keep_cooldown_service.h"
#include "services/notify_hours.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "support/log_capture.h"
#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

#include <memory>
#include <vector>

namespace tally::test {
namespace {

using namespace Qt::StringLiterals;
using services::KeepCooldownService;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double hour = 3600.0;
constexpr double killed = 1'700'000'000.0;
constexpr double ready_at = killed + 68 * hour;

/// A service over a store of its own, whose clock and whose restarts are in the test's hands.
class Keep : public testing::Test {
protected:
    Keep()
    {
        KeepCooldownService::install_notice([this](const QString &, const QString &text) {
            notices_.push_back(text.section(u' ', 2, 4).toStdString());
        });
        kill_at(killed);
    }
    ~Keep() override { KeepCooldownService::install_notice({}); }

    void kill_at(double time)
    {
        data::TrialParticipant me = participant(u"Ada"_s);
        me.player_id = 77.0;
        data::TrialReport report = trial({me});
        report.event_time = time;
        report.npc_type = 102000155.0;
        store_.db.insert_trial_report(u"Persistent.Mail.%1"_s.arg(++mails_), report, time);
    }

    void start()
    {
        service_.reset();
        settings_ = std::make_unique<Settings>(store_.db);
        service_ = std::make_unique<KeepCooldownService>(&store_.db, settings_.get(), nullptr,
                                                         nullptr, [this] { return now_; });
        QObject::connect(service_.get(), &KeepCooldownService::keepReady, [this] { ++ready_; });
        QObject::connect(service_.get(), &KeepCooldownService::countdownTick,
                         [this](double seconds, bool is_ready) {
                             countdown_ = {seconds, is_ready};
                         });
    }

    void tick_at(double time)
    {
        if (!service_)
            start();
        now_ = time;
        service_->on_tick();
    }

    void set(const QString &key, const QString &text) { store_.db.set_setting(key, text); }
    std::string stored(const QString &key) const
    {
        return store_.db.setting_or(key, u"<none>"_s).toStdString();
    }
    void sql(const QString &text) const { PlainConnection(store_.path).rows(text); }

    TempStore store_;
    double now_ = 0.0;
    std::vector<std::string> notices_;
    int ready_ = 0;
    std::pair<double, bool> countdown_{-1.0, false};
    std::unique_ptr<Settings> settings_;
    std::unique_ptr<KeepCooldownService> service_;

private:
    int mails_ = 0;
};

TEST_F(Keep, SaysEverythingOnceInAWholeCooldownWithRestarts)
{
    int ticks = 0;
    for (double time = killed; time < ready_at + 4 * hour; time += 421.0) {
        if (++ticks % 5 == 0)
            start();
        tick_at(time);
    }
    EXPECT_THAT(notices_, ElementsAre("in ~5 hours", "in ~3 hours", "in ~1 hour"));
    EXPECT_EQ(ready_, 1);
    EXPECT_EQ(countdown_, std::pair(0.0, true));
}

TEST_F(Keep, WarnsFromTheVeryHourUntilReadiness)
{
    tick_at(ready_at - 5 * hour - 1.0);
    EXPECT_THAT(notices_, IsEmpty());
    EXPECT_EQ(countdown_, std::pair(5 * hour + 1.0, false));
    tick_at(ready_at - 5 * hour);
    EXPECT_THAT(notices_, ElementsAre("in ~5 hours"));
    // Asleep over the other hours and the moment itself.
    tick_at(ready_at);
    EXPECT_EQ(notices_.size(), 1u);
    EXPECT_EQ(ready_, 1);
}

TEST_F(Keep, WarnsOfAllHoursThatLieAheadWhenItStartsLate)
{
    set(u"keep_notify_before_hours"_s, u"5 10;;240"_s);
    tick_at(ready_at - 0.5 * hour);
    EXPECT_THAT(notices_, ElementsAre("in ~5 hours", "in ~10 hours"));
    EXPECT_EQ(stored(u"keep_notify_ack_sent"_s), "10,5");
}

TEST_F(Keep, RepeatsNothingWhenTheClockIsSetBack)
{
    tick_at(ready_at - 3 * hour);
    tick_at(ready_at + 60.0);
    tick_at(ready_at - 4 * hour);
    EXPECT_FALSE(countdown_.second);
    start();
    tick_at(ready_at - 2 * hour);
    tick_at(ready_at + 120.0);
    EXPECT_THAT(notices_, ElementsAre("in ~5 hours", "in ~3 hours"));
    EXPECT_EQ(ready_, 1);
}

TEST_F(Keep, BeginsAnewWithTheLaterOfTwoKills)
{
    tick_at(ready_at + 60.0);
    kill_at(ready_at + 100.25);
    kill_at(ready_at + 200.5);
    tick_at(ready_at + 300.0);
    EXPECT_EQ(countdown_, std::pair(68 * hour - 99.5, false));
    EXPECT_EQ(stored(u"keep_notify_ack_last_ts"_s), "1700245000.500");
    tick_at(ready_at + 200.5 + 67.5 * hour);
    tick_at(ready_at + 201.0 + 68 * hour);
    EXPECT_THAT(notices_, ElementsAre("in ~5 hours", "in ~3 hours", "in ~1 hour"));
    EXPECT_EQ(ready_, 2);
}

TEST_F(Keep, IsSilentWhileSwitchedOffAndLosesNoReadiness)
{
    set(u"keep_notify_enabled"_s, u"0"_s);
    tick_at(ready_at - hour);
    tick_at(ready_at + 60.0);
    EXPECT_TRUE(countdown_.second);
    EXPECT_EQ(stored(u"keep_ready_overlay_ack_ts"_s), "<none>");
    settings_->set(settings::keep_notify_enabled, true);
    service_->reload_settings();
    tick_at(ready_at + 120.0);
    EXPECT_THAT(notices_, IsEmpty());
    EXPECT_EQ(ready_, 1);
}

TEST_F(Keep, FollowsAChangedCooldownWithoutRepeatingItself)
{
    tick_at(ready_at - 3 * hour);
    settings_->set(settings::keep_cooldown_hours, 70);
    service_->reload_settings();
    tick_at(ready_at - 3 * hour + 60.0);
    EXPECT_EQ(countdown_, std::pair(5 * hour - 60.0, false));
    EXPECT_THAT(notices_, ElementsAre("in ~5 hours", "in ~3 hours"));
    for (const QString &nonsense : {u"0"_s, u"abc"_s, u"-3"_s}) {
        set(u"keep_cooldown_hours"_s, nonsense);
        service_->reload_settings();
        tick_at(ready_at);
        EXPECT_EQ(countdown_, std::pair(0.0, true)) << nonsense.toStdString();
    }
}

TEST_F(Keep, SaysEverythingOnceThoughNothingCanBeStored)
{
    tick_at(killed);
    sql(u"CREATE TRIGGER full BEFORE INSERT ON settings BEGIN SELECT RAISE(FAIL, 'full'); END"_s);
    now_ = ready_at - 4 * hour;
    EXPECT_THAT(failure_of([this] { service_->on_tick(); }), testing::HasSubstr("full"));
    service_->tick();
    EXPECT_THAT(notices_, ElementsAre("in ~5 hours"));
    sql(u"DROP TRIGGER full"_s);
    start();
    tick_at(now_);
    EXPECT_EQ(stored(u"keep_notify_ack_sent"_s), "5");
}

TEST_F(Keep, FailsAtItsTimerWithOneLineInTheLog)
{
    start();
    sql(u"ALTER TABLE trial_reports RENAME TO gone"_s);
    const LogCapture log;
    for (int i = 0; i < 3; ++i)
        service_->tick();
    EXPECT_EQ(LogCapture::lines(u"cooldown is not known"_s).size(), 1);
    sql(u"ALTER TABLE gone RENAME TO trial_reports"_s);
    now_ = ready_at;
    service_->tick();
    EXPECT_EQ(ready_, 1);
}

TEST_F(Keep, WorksWithTheAnswerOfAnotherThread)
{
    std::function<void(std::optional<double>)> found;
    start();
    now_ = ready_at - hour;
    service_->set_kill_query([&](auto on_found, auto) { found = std::move(on_found); });
    service_->tick();
    EXPECT_THAT(notices_, IsEmpty());
    found(killed);
    EXPECT_EQ(countdown_, std::pair(hour, false));
    EXPECT_EQ(notices_.size(), 3u);
}

TEST_F(Keep, CountsNothingWithoutAKill)
{
    sql(u"DELETE FROM trial_reports"_s);
    tick_at(ready_at);
    EXPECT_EQ(countdown_, std::pair(0.0, false));
    EXPECT_EQ(ready_, 0);
    KeepCooldownService::install_notice({});
    EXPECT_FALSE(KeepCooldownService::show_test_notification());
}

TEST(NotifyHours, AreReadAsWrittenAndBounded)
{
    using services::NotifyHours;
    using services::parse_notify_hours;
    EXPECT_EQ(parse_notify_hours(u" 5; 3,,1\t5"_s), (NotifyHours{{5, 3, 1, 5}, {}}));
    EXPECT_EQ(parse_notify_hours(u"0 239 240 x 2.5"_s),
              (NotifyHours{{239}, {u"0"_s, u"240"_s, u"x"_s, u"2.5"_s}}));
    EXPECT_EQ(parse_notify_hours(u" , "_s), NotifyHours{});
}

} // namespace
} // namespace tally::test
