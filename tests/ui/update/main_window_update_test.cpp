#include "platform/updater/snooze.h"
#include "support/installation.h"
#include "support/update_site.h"
#include "support/window_fixture.h"
#include "ui/update/update_dialog.h"

#include <QLabel>
#include <QMessageBox>
#include <QTimer>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::platform::Updater;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

constexpr double now = 1.8e9;

class Updates : public testing::Test {
protected:
    Updates()
    {
        fixture_.around.endpoint = site_.endpoint();
        fixture_.around.clock = [] {
            return now;
        };
        fixture_.setup.update_answer = std::chrono::seconds(30);
        fixture_.setup.adjust_update = [this](ui::UpdateSetup &setup) {
            setup.updates_dir = installed_.updates_dir();
            setup.tools = installed_.tools(script_);
        };
        site_.offer(u"v3"_s, platform::read_file(installed_.zip()));
    }

    ui::MainWindow &open()
    {
        fixture_.open().show();
        return *fixture_.window();
    }
    void snooze(const QString &version, int seconds_ago)
    {
        snooze_24h(&fixture_.store.db, version, [=] { return now - seconds_ago; });
    }
    bool is_snoozed() { return snoozed_until(&fixture_.store.db).has_value(); }
    ui::UpdateDialog *dialog() const { return fixture_.window()->findChild<ui::UpdateDialog *>(); }
    /// Opens a required update and begins to download it.
    void download()
    {
        snooze(u"v3"_s, 90'000);
        open().check_for_updates(false);
        QTest::keyClick(dialog(), Qt::Key_Return);
    }
    /// What the box over the window says; "" if there is none. It is closed.
    std::string box() const
    {
        const std::unique_ptr<QMessageBox> box(fixture_.window()->findChild<QMessageBox *>());
        return box ? (box->windowTitle() + u'|' + box->text()).toStdString() : std::string();
    }
    qsizetype checks() const { return site_.requests_of(u"/api/version/cpp"_s); }

    UpdateSite site_;
    Installation installed_;
    QString script_;
    WindowFixture fixture_;
};

} // namespace

TEST_F(Updates, AreLookedForSoonAfterTheStartAndThenAgainAndAgain)
{
    fixture_.setup.update_delay = std::chrono::milliseconds(1);
    fixture_.setup.update_interval = std::chrono::milliseconds(50);
    site_.put_record({{u"version"_s, u"v1"_s}});
    open().run_post_startup();
    EXPECT_TRUE(wait_until([&] { return checks() >= 3; }));
    EXPECT_EQ(box(), "") << "what nobody has asked for says nothing";
}

TEST_F(Updates, ACheckByHandSaysWhatCameOfIt)
{
    ui::MainWindow &window = open();
    snooze(u"v3"_s, 0);
    site_.break_with(u"status=500"_s);
    window.check_for_updates(false);
    EXPECT_EQ(box(), "");
    fixture_.action(u"Help/Check for updates..."_s)->trigger();
    EXPECT_EQ(box(), "Check for updates|Could not reach the update server. Check your network "
                     "connection and try again.");
    EXPECT_TRUE(is_snoozed());
    site_.mend();
    site_.put_record({{u"version"_s, u"v2.0-alfa.072"_s}});
    window.check_for_updates(true);
    EXPECT_EQ(box(), "Up to date|You are running the latest version (v2.0-alfa.072).");
    EXPECT_FALSE(is_snoozed() || dialog());
}

TEST_F(Updates, APostponedVersionIsOfferedByHandOnlyAndRequiredAfterADay)
{
    ui::MainWindow &window = open();
    for (const auto &[version, age, manual, title] :
         {std::tuple(u"v3"_s, 100, false, u""_s),
          {u"v3"_s, 100, true, u"New version available"_s},
          {u"v2z"_s, 100, false, u"New version available"_s},
          {u"v3"_s, 86'400, false, u"Update required"_s}}) {
        snooze(version, age);
        window.check_for_updates(manual);
        ASSERT_EQ(dialog() == nullptr, title.isEmpty());
        if (!dialog())
            continue;
        EXPECT_EQ(dialog()->findChild<QLabel *>()->text(), title);
        dialog()->request_end();
        EXPECT_TRUE(dialog()->close() && wait_until([&] { return !dialog(); }));
    }
    EXPECT_TRUE(window.isVisible());
}

TEST_F(Updates, OneCheckAtATime)
{
    ui::MainWindow &window = open();
    const auto check_twice = [&] {
        window.statusBar()->clearMessage();
        window.check_for_updates(false);
        EXPECT_EQ(fixture_.message(), "");
        window.check_for_updates(true);
        EXPECT_EQ(fixture_.message(), "Update check already in progress.");
    };
    QTimer::singleShot(0, check_twice);
    window.check_for_updates(false);
    ASSERT_TRUE(dialog());
    check_twice();
    EXPECT_EQ(checks(), 1);
}

TEST_F(Updates, AnInstallThatHasBegunEndsTheProgram)
{
    download();
    EXPECT_TRUE(wait_until([&] { return !fixture_.window()->isVisible(); }));
    EXPECT_NE(script_, QString());
    fixture_.destroy();
    EXPECT_EQ(fixture_.hard_exits(), 0);
}

TEST_F(Updates, LeavingWaitsForNoAnswerAndNoDownload)
{
    site_.break_with(u"silent"_s);
    ui::MainWindow &window = open();
    QTimer::singleShot(20, &window, &ui::MainWindow::request_exit);
    window.check_for_updates(true);
    EXPECT_EQ(box(), "");
    EXPECT_FALSE(window.isVisible());
    fixture_.destroy();
    site_.mend();
    site_.break_with(u"endless@/updates"_s);
    download();
    EXPECT_TRUE(wait_until([&] { return site_.requests_of(u"/updates/payload.zip"_s) == 1; }));
    fixture_.window()->request_exit();
    EXPECT_FALSE(fixture_.window()->isVisible());
    fixture_.destroy();
    EXPECT_EQ(script_, QString());
    EXPECT_EQ(fixture_.hard_exits(), 0);
}

TEST_F(Updates, ABuildThatOthersUpdateSaysWhoAndNeverAsks)
{
    fixture_.around.endpoint.updated_by = u"the distribution"_s;
    fixture_.setup.update_delay = std::chrono::milliseconds(0);
    ui::MainWindow &window = open();
    const QAction *entry = fixture_.action(u"Help/Check for updates..."_s);
    EXPECT_FALSE(entry->isEnabled());
    EXPECT_EQ(entry->toolTip(), u"New versions come from the distribution."_s);
    window.run_post_startup();
    EXPECT_TRUE(wait_until([&] { return window.chain().watching(); }));
    EXPECT_EQ(checks(), 0);
}

TEST_F(Updates, AnUncleanUpdateStandsInTheStatusBarAndLeavesTheWindowItsWidth)
{
    ui::MainWindow &window = open();
    const int width = window.minimumSizeHint().width();
    const QString place = u"/tmp/"_s + QString(300, u'x');
    window.tell_of_unclean_update(place);
    EXPECT_EQ(fixture_.message(), "Ready.");
    window.statusBar()->clearMessage();
    const auto *notice = window.findChild<QLabel *>(u"updateNotice"_s);
    EXPECT_TRUE(notice->isVisible());
    EXPECT_EQ(
        notice->text(),
        u"The last update did not start cleanly. The version before it lies in %1."_s.arg(place));
    EXPECT_LE(window.minimumSizeHint().width(), width + 50);
}
