#include "support/report_builders.h"
#include "support/window_fixture.h"
#include "ui/honor/honor_summary_overlay.h"

#include <QApplication>
#include <QLabel>
#include <QSemaphore>

#include <gtest/gtest.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

class TrackerOfTheWindow : public testing::Test {
protected:
    static honor::HonorSummaryOverlay *tracker()
    {
        return shown_windows<honor::HonorSummaryOverlay>().value(0);
    }
    QAction *entry() const { return fixture_.action(u"View/Honor Tracker"_s); }
    bool comes_to_say(const QString &text) const
    {
        return wait_until(
            [&] { return tracker()->findChild<QLabel *>(u"status"_s)->text() == text; });
    }
    void import_people()
    {
        fixture_.store.db.insert_report(u"first"_s, battle(1.0, {battle_round(1.0)}), 1.0);
        fixture_.store.db.insert_field_report(u"field"_s, field_fight({u"Grim"_s, u"Vole"_s}), 1.0);
    }

    WindowFixture fixture_;
};

TEST_F(TrackerOfTheWindow, StandsOpenFromTheFirstStartUntilItIsClosed)
{
    fixture_.open().run_post_startup();
    ASSERT_TRUE(wait_until([this] { return fixture_.open_chain().watching(); }));
    ASSERT_NE(tracker(), nullptr);
    EXPECT_TRUE(entry()->isChecked());
    EXPECT_TRUE(comes_to_say(u"No imported reports - cannot detect player"_s));
    import_people();
    fixture_.window()->refresh_all_tabs();
    EXPECT_TRUE(comes_to_say(u"Game not running"_s)) << "what it lacked was imported";

    fixture_.destroy();
    EXPECT_EQ(tracker(), nullptr);
    EXPECT_EQ(fixture_.setting(u"honor_tracker_visible"_s), "1");
    fixture_.open();
    entry()->trigger();
    tracker()->close();
    EXPECT_FALSE(entry()->isChecked());
    EXPECT_EQ(fixture_.setting(u"honor_tracker_visible"_s), "0");
}

TEST_F(TrackerOfTheWindow, LeavingEndsTheReadThatRuns)
{
    import_people();
    QSemaphore reading;
    QSemaphore go_on;
    const auto image = std::make_shared<platform::FakeImage>();
    image->regions = {{0x10000, std::string(1 << 20, 'x')}, {0x4000000, std::string(1 << 20, 'x')}};
    image->on_read = [&] {
        reading.release();
        go_on.acquire();
    };
    fixture_.host.windows = {{7, u"Rise of Kingdoms", 9}};
    fixture_.host.processes[9].memory = image;
    fixture_.open();
    entry()->trigger();
    ASSERT_TRUE(wait_until([&] { return reading.tryAcquire(); }));
    fixture_.window()->request_exit();
    go_on.release(100);
    fixture_.destroy();
    EXPECT_EQ(fixture_.hard_exits(), 0);
    EXPECT_EQ(image->reads, 1U);
}

} // namespace
