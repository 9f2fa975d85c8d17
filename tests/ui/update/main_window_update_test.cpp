#include "platform/identity.h"
#include "platform/updater/snooze.h"
#include "support/installation.h"
#include "support/update_site.h"
#include "support/window_fixture.h"
#include "ui/update/update_dialog.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::platform;
using namespace tally::platform::Updater;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

const QString record_path = u"/api/version/cpp"_s;
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
            setup.updates_dir = installed_.file(u"data/updates"_s);
            setup.tools = installed_.tools(script_);
        };
        site_.offer(u"v3"_s, read_file(installed_.make_payload()));
    }

    ui::MainWindow &open()
    {
        ui::MainWindow &window = fixture_.open();
        window.show();
        return window;
    }
    ui::UpdateDialog *dialog() const
    {
        const auto dialogs = fixture_.window()->findChildren<ui::UpdateDialog *>();
        return dialogs.isEmpty() || !dialogs.first()->isVisible() ? nullptr : dialogs.first();
    }
    bool is_forced() const
    {
        const auto labels = dialog()->findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(),
                           [](const QLabel *label) { return label->text() == u"Update required"; });
    }
    /// Title and text of the box over the window; "" if there is none. It is closed.
    std::string box() const
    {
        const auto boxes = fixture_.window()->findChildren<QMessageBox *>();
        std::string text;
        for (QMessageBox *box : boxes) {
            text = (box->windowTitle() + u'|' + box->text()).toStdString();
            delete box;
        }
        return text;
    }
    void press_download() const
    {
        QTest::keyClick(dialog(), Qt::Key_Return);
        ASSERT_FALSE(dialog()->findChild<QPushButton *>()->isEnabled());
    }

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
    EXPECT_TRUE(wait_until([&] { return site_.requests_of(record_path) >= 3; }));
    EXPECT_EQ(box(), "") << "what nobody has asked for says nothing";
    EXPECT_EQ(ui::WindowSetup().update_delay, std::chrono::seconds(3));
    EXPECT_EQ(ui::WindowSetup().update_interval, std::chrono::hours(1));
}

TEST_F(Updates, ACheckByHandSaysWhatCameOfIt)
{
    ui::MainWindow &window = open();
    snooze_24h(&fixture_.store.db, u"v3"_s, [] { return now; });
    site_.break_with(u"status=500"_s);
    fixture_.action(u"Help/Check for updates..."_s)->trigger();
    EXPECT_EQ(box(), "Check for updates|Could not reach the update server. Check your network "
                     "connection and try again.");
    EXPECT_NE(snoozed_until(&fixture_.store.db), std::nullopt);
    window.check_for_updates(false);
    EXPECT_EQ(box(), "");
    site_.mend();
    site_.put_record({{u"version"_s, QString(application_version)}});
    window.check_for_updates(true);
    EXPECT_EQ(box(), "Up to date|You are running the latest version (v2.0-alfa.072).");
    EXPECT_EQ(snoozed_until(&fixture_.store.db), std::nullopt);
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(Updates, APostponedVersionIsOfferedByHandOnlyAndRequiredAfterADay)
{
    ui::MainWindow &window = open();
    for (const auto &[version, age, manual, is_offered, forced] :
         {std::tuple(u"v3"_s, 100, false, false, false),
          {u"v3"_s, 100, true, true, false},
          {u"v2z"_s, 100, false, true, false},
          {u"v3"_s, 86'400, false, true, true},
          {u"v3"_s, 86'400, true, true, true}}) {
        snooze_24h(&fixture_.store.db, version, [age = age] { return now - age; });
        window.check_for_updates(manual);
        ASSERT_EQ(dialog() != nullptr, is_offered);
        if (!is_offered)
            continue;
        EXPECT_EQ(is_forced(), forced);
        dialog()->request_end();
        EXPECT_TRUE(dialog()->close());
        EXPECT_TRUE(wait_until([&] { return window.findChild<ui::UpdateDialog *>() == nullptr; }));
    }
    EXPECT_EQ(fixture_.hard_exits(), 0);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(Updates, OneCheckAtATime)
{
    ui::MainWindow &window = open();
    QTimer::singleShot(0, &window, [&] {
        window.check_for_updates(false);
        EXPECT_EQ(fixture_.message(), "Ready.");
        window.check_for_updates(true);
        EXPECT_EQ(fixture_.message(), "Update check already in progress.");
    });
    window.check_for_updates(false);
    ASSERT_NE(dialog(), nullptr);
    window.statusBar()->clearMessage();
    window.check_for_updates(true);
    EXPECT_EQ(fixture_.message(), "Update check already in progress.");
    EXPECT_EQ(site_.requests_of(record_path), 1);
    EXPECT_EQ(window.findChildren<ui::UpdateDialog *>().size(), 1);
}

TEST_F(Updates, AnInstallThatHasBegunEndsTheProgram)
{
    ui::MainWindow &window = open();
    snooze_24h(&fixture_.store.db, u"v3"_s, [] { return now - 90'000; });
    window.check_for_updates(false);
    ASSERT_TRUE(dialog() && is_forced());
    press_download();
    EXPECT_TRUE(wait_until([&] { return !window.isVisible(); }));
    EXPECT_NE(script_, QString());
    fixture_.destroy();
    EXPECT_EQ(fixture_.hard_exits(), 0);
    QFile::remove(script_);
}

TEST_F(Updates, LeavingWaitsForNoAnswerAndNoDownload)
{
    ui::MainWindow &window = open();
    // The record is on its way.
    site_.break_with(u"silent"_s);
    QTimer::singleShot(20, &window, [&] {
        window.request_exit();
        EXPECT_FALSE(window.isVisible());
    });
    window.check_for_updates(true);
    EXPECT_EQ(box(), "");
    fixture_.destroy();
    // A required update is being downloaded.
    site_.mend();
    ui::MainWindow &next = open();
    snooze_24h(&fixture_.store.db, u"v3"_s, [] { return now - 90'000; });
    next.check_for_updates(false);
    ASSERT_TRUE(dialog() && is_forced());
    site_.break_with(u"endless@/updates"_s);
    press_download();
    EXPECT_TRUE(wait_until([&] { return site_.requests_of(u"/updates/payload.zip"_s) == 1; }));
    next.request_exit();
    EXPECT_FALSE(next.isVisible());
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
    QSignalSpy started(&window.chain(), &ui::StartUpChain::refreshDone);
    window.run_post_startup();
    ASSERT_TRUE(started.wait(30'000));
    QTest::qWait(20);
    EXPECT_EQ(site_.requests_of(record_path), 0);
}

TEST_F(Updates, AnUncleanUpdateStandsInTheStatusBarAndLeavesTheWindowItsWidth)
{
    ui::MainWindow &window = open();
    const int width = window.minimumSizeHint().width();
    window.tell_of_unclean_update(u"/tmp/"_s + QString(300, u'x'));
    window.tell_of_unclean_update({});
    QStringList texts;
    for (const QLabel *notice : window.findChildren<QLabel *>(u"updateNotice"_s))
        texts << notice->text();
    EXPECT_EQ(texts,
              QStringList({u"The last update did not start cleanly. The version before it lies "
                           "in /tmp/"_s +
                               QString(300, u'x') + u'.',
                           u"The last update did not start cleanly."_s}));
    EXPECT_LE(window.minimumSizeHint().width(), width + 50);
}
