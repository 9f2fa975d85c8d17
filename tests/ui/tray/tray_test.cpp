#include "support/window_fixture.h"
#include "ui/alerts/barbarian_keep_overlay.h"
#include "ui/alerts/keep_toast.h"
#include "ui/alerts/tray_manager.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QProcess>
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

/// On a screen of its own with a window manager; the main program has made it.
class Alerts : public testing::Test {
protected:
    void SetUp() override
    {
        if (QGuiApplication::platformName() != u"xcb"_s)
            GTEST_SKIP() << "Xvfb and openbox are needed";
    }
};

QPointer<KeepToast> new_toast()
{
    auto *toast = new KeepToast(u"🏰 Barbarian Keep"_s, u"Keep ready in ~1 hour"_s);
    toast->show_toast();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(toast));
    return toast;
}

TEST_F(Alerts, NoticesLeaveTheKeyboardToTheGame)
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

TEST_F(Alerts, ANoticeThatTheBannerMeetsCanStillBeClicked)
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
    // The one above it has come down into its place.
    EXPECT_TRUE(
        wait_until([&] { return QApplication::topLevelAt(both.center()) == toasts.at(4); }));
    EXPECT_FALSE(banner.isNull());
    click(banner->geometry().topLeft() + QPoint(10, 10));
    EXPECT_TRUE(wait_until([&] { return banner.isNull(); }));
    qDeleteAll(toasts);
}

/// A main window whose start is over.
class WindowWithoutTray : public Alerts {
protected:
    void SetUp() override
    {
        Alerts::SetUp();
        if (!IsSkipped())
            open();
    }
    void TearDown() override { fixture_.destroy(); }

    void open()
    {
        ui::MainWindow &window = fixture_.open();
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        window.run_post_startup();
        ASSERT_TRUE(wait_until([&] {
            return fixture_.open_chain().watching() && !QApplication::activeModalWidget();
        }));
    }
    /// What the program ends with, or what it is ended with after a time in which it should have.
    static int run()
    {
        QTimer limit;
        QObject::connect(&limit, &QTimer::timeout, [] { QCoreApplication::exit(still_running); });
        limit.start(20'000);
        return QApplication::exec();
    }

    static constexpr int still_running = 7;
    WindowFixture fixture_;
};

TEST_F(WindowWithoutTray, EndsTheProgramWithItsCloseButton)
{
    EXPECT_EQ(fixture_.window()->findChild<QSystemTrayIcon *>(), nullptr);
    QTimer::singleShot(0, fixture_.window(), &QWidget::close);
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(fixture_.open_chain().watching());
    EXPECT_EQ(fixture_.setting(u"tray_notice_shown"_s), "<none>");
}

/// The same beside a tray that runs on this screen.
class WindowWithTray : public WindowWithoutTray {
protected:
    void SetUp() override
    {
        Alerts::SetUp();
        if (!IsSkipped() && QStandardPaths::findExecutable(u"trayer"_s).isEmpty())
            GTEST_SKIP() << "trayer is needed";
        if (IsSkipped())
            return;
        tray_.start(u"trayer"_s, {u"--edge"_s, u"top"_s});
        ASSERT_TRUE(wait_until([] { return QSystemTrayIcon::isSystemTrayAvailable(); }));
        open();
        ASSERT_NE(manager(), nullptr);
    }
    void TearDown() override
    {
        WindowWithoutTray::TearDown();
        tray_.terminate();
        tray_.waitForFinished();
    }

    TrayManager *manager() const { return fixture_.window()->findChild<TrayManager *>(); }
    static bool says_that_it_goes_on()
    {
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            for (const QLabel *label : window->findChildren<QLabel *>()) {
                if (label->isVisible() && label->text() == u"Tallyhand goes on in the tray."_s)
                    return true;
            }
        }
        return false;
    }

    QProcess tray_;
};

TEST_F(WindowWithTray, GoesOnBehindItWhateverCloses)
{
    ui::MainWindow &window = *fixture_.window();
    window.close();
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(window.chain().watching());

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
    EXPECT_EQ(run(), still_running);

    QTimer::singleShot(0, manager(), &TrayManager::exitRequested);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(fixture_.hard_exits(), 0);
}

TEST_F(WindowWithTray, ComesBackByADoubleClickAndIsAnnouncedOnce)
{
    ui::MainWindow &window = *fixture_.window();
    auto &icon = *window.findChild<QSystemTrayIcon *>();
    ASSERT_TRUE(wait_until([&] { return icon.geometry().isValid(); }));
    QSignalSpy clicks(&icon, &QSystemTrayIcon::activated);
    window.close();
    EXPECT_TRUE(wait_until(says_that_it_goes_on));
    EXPECT_EQ(fixture_.setting(u"tray_notice_shown"_s), "1");

    click(icon.geometry().center());
    ASSERT_TRUE(wait_until([&] { return clicks.count() == 1; }));
    EXPECT_FALSE(window.isVisible());
    click(icon.geometry().center());
    EXPECT_TRUE(wait_until([&] { return window.isVisible(); }));
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_TRUE(wait_until([] { return !says_that_it_goes_on(); }));
    window.close();
    EXPECT_FALSE(says_that_it_goes_on());
}

} // namespace
} // namespace tally::test
