#include "support/window_fixture.h"
#include "ui/alerts/barbarian_keep_overlay.h"
#include "ui/alerts/keep_toast.h"
#include "ui/alerts/tray_manager.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QSystemTrayIcon>
#include <QTimer>

#include <gtest/gtest.h>

namespace tally::test {
namespace {

using namespace Qt::StringLiterals;
using namespace tally::ui;

void click(QPoint at)
{
    QProcess::execute(u"xdotool"_s, {u"mousemove"_s, QString::number(at.x()),
                                     QString::number(at.y()), u"click"_s, u"1"_s});
}

QPointer<KeepToast> new_toast()
{
    auto *toast = new KeepToast(u"🏰 Barbarian Keep"_s, u"Keep ready in ~1 hour"_s);
    toast->show_toast();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(toast));
    return toast;
}

TEST(Alerts, NoticesLeaveTheKeyboardToTheGame)
{
    QWidget game;
    game.setGeometry(0, 0, 1000, 700);
    game.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&game));
    const auto toast = new_toast();
    EXPECT_TRUE(game.isActiveWindow());
    click(toast->geometry().center());
    EXPECT_TRUE(wait_until([&] { return toast.isNull(); }));
    EXPECT_TRUE(game.isActiveWindow());
}

TEST(Alerts, ANoticeThatTheBannerMeetsCanStillBeClicked)
{
    QList<QPointer<KeepToast>> toasts;
    for (int i = 0; i < 5; ++i)
        toasts << new_toast();
    QPointer<BarbarianKeepOverlay> banner = new BarbarianKeepOverlay;
    banner->show_centered();
    ASSERT_TRUE(QTest::qWaitForWindowActive(banner));
    QPointer<KeepToast> met = toasts.at(3);
    const QRect both = met->geometry() & banner->geometry();
    ASSERT_FALSE(both.isEmpty());
    EXPECT_TRUE(wait_until([&] { return QApplication::topLevelAt(both.center()) == met; }));
    click(both.center());
    EXPECT_TRUE(wait_until([&] { return met.isNull(); }));
    EXPECT_FALSE(banner.isNull());
    click(banner->geometry().topLeft() + QPoint(10, 10));
    EXPECT_TRUE(wait_until([&] { return banner.isNull(); }));
    qDeleteAll(toasts);
}

/// A main window beside a tray that runs on the same screen.
class WindowWithTray : public testing::Test {
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable(u"trayer"_s).isEmpty())
            GTEST_SKIP() << "trayer is needed";
        tray_.start(u"trayer"_s, {u"--edge"_s, u"top"_s});
        ASSERT_TRUE(wait_until([] { return QSystemTrayIcon::isSystemTrayAvailable(); }));
        ui::MainWindow &window = fixture_.open();
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        window.run_post_startup();
        ASSERT_TRUE(wait_until([&] {
            return window.findChild<TrayManager *>() && fixture_.open_chain().watching() &&
                   !QApplication::activeModalWidget();
        }));
    }
    void TearDown() override
    {
        fixture_.destroy();
        tray_.terminate();
        tray_.waitForFinished();
    }

    WindowFixture fixture_;
    QProcess tray_;
};

TEST_F(WindowWithTray, GoesOnBehindItWhateverCloses)
{
    ui::MainWindow &window = *fixture_.window();
    window.close();
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(window.chain().watching());
    EXPECT_EQ(fixture_.setting(u"tray_notice_shown"_s), "1");

    constexpr int still_running = 7;
    QTimer::singleShot(0, qApp, [] {
        QDialog dialog;
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        dialog.close();
        new_toast()->close();
        auto *banner = new BarbarianKeepOverlay;
        banner->show_centered();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(banner));
        banner->close();
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(still_running); });
    });
    EXPECT_EQ(QApplication::exec(), still_running);

    Q_EMIT window.findChild<TrayManager *>()->showRequested();
    EXPECT_TRUE(window.isVisible());
    window.close();
    EXPECT_FALSE(window.isVisible());
    QTimer::singleShot(0, &window,
                       [&window] { Q_EMIT window.findChild<TrayManager *>()->exitRequested(); });
    QTimer::singleShot(20'000, &window, [] { QCoreApplication::exit(still_running); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(fixture_.hard_exits(), 0);
}

} // namespace
} // namespace tally::test
