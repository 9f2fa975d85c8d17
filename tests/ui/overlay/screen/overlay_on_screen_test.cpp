#include "fake_game/game_process.h"
#include "platform/host/game_windows.h"
#include "platform/host/x11/x11_host.h"
#include "queries/store_queries.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "support/temp_store.h"
#include "ui/overlay/overlay_window.h"
#include "ui/parts/quiet_modal.h"

#include <QApplication>
#include <QDialog>
#include <QMouseEvent>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

namespace tally::ui {
namespace {

using namespace Qt::StringLiterals;
using platform::WindowHandle;

bool comes(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, 20'000);
}

/// Counts what a window is told.
class Told : public QObject {
public:
    Told(QObject &window, QEvent::Type type) : type_(type) { window.installEventFilter(this); }
    int times = 0;

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        times += event->type() == type_ ? 1 : 0;
        return false;
    }

private:
    QEvent::Type type_;
};

/// The overlay beside a game, under a window manager.
class OverlayOnScreen : public testing::Test {
protected:
    OverlayOnScreen() { start_game(); }

    void start_game()
    {
        game_ = std::make_unique<test::GameProcess>(
            QProcessEnvironment::systemEnvironment(),
            QStringList{u"--records"_s, u"0"_s, u"--title"_s, u"Rise of Kingdoms"_s});
        ASSERT_TRUE(game_->ready());
        ASSERT_TRUE(comes([this] { return platform::find_game_windows(host_).size() == 1; }));
        window_ = platform::find_game_windows(host_).first().hwnd;
        ASSERT_TRUE(comes([this] { return host_.foreground_window() == window_; }));
        tell_window(u"windowsize"_s, {u"1100"_s, u"700"_s}); // with room for the overlay
    }
    void open(bool pinned)
    {
        settings_.set(settings::overlay_mode, u"compact1"_s);
        settings_.set(settings::overlay_pinned, pinned);
        overlay_ = std::make_unique<OverlayWindow>(Surroundings{.db = store_.db,
                                                                .queries = queries_,
                                                                .settings = settings_,
                                                                .host = host_,
                                                                .icon_dir = store_.folder.path()},
                                                   nullptr, 1.0);
        overlay_->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(overlay_.get()));
    }
    bool comes_to_the_game()
    {
        return comes([this] {
            const platform::WindowRect rect = host_.window_rect(window_);
            return rect.valid && overlay_->isVisible() &&
                   overlay_->pos() == QPoint(rect.x + 20, rect.y + 80);
        });
    }
    bool hides()
    {
        return comes([this] { return !overlay_->isVisible(); });
    }
    void tell_window(const QString &command, const QStringList &rest = {})
    {
        ASSERT_EQ(
            QProcess::execute(u"xdotool"_s, QStringList{command, QString::number(window_)} + rest),
            0);
    }

    static void click(QPoint at)
    {
        QProcess::execute(u"xdotool"_s, {u"mousemove"_s, QString::number(at.x()),
                                         QString::number(at.y()), u"click"_s, u"1"_s});
    }

    test::TempStore store_;
    queries::StoreQueries queries_{store_.db};
    Settings settings_{store_.db};
    platform::X11Host host_{qgetenv("DISPLAY").toStdString()};
    std::unique_ptr<test::GameProcess> game_;
    WindowHandle window_ = platform::no_window;
    std::unique_ptr<OverlayWindow> overlay_;
};

TEST_F(OverlayOnScreen, FollowsTheGameThroughAllThatBefallsIt)
{
    open(true);
    EXPECT_TRUE(comes_to_the_game());
    const Told hidden(*overlay_, QEvent::Hide);
    tell_window(u"windowmove"_s, {u"300"_s, u"200"_s});
    EXPECT_TRUE(comes([this] { return host_.window_rect(window_).x >= 295; }));
    EXPECT_TRUE(comes_to_the_game());
    tell_window(u"windowsize"_s, {u"1000"_s, u"500"_s});
    EXPECT_TRUE(comes_to_the_game());
    ASSERT_TRUE(game_->tell("full"));
    EXPECT_TRUE(comes([this] { return host_.window_rect(window_).w == 1280; }));
    EXPECT_TRUE(comes_to_the_game());
    EXPECT_EQ(hidden.times, 0) << "nothing of that makes it flicker";
    ASSERT_TRUE(game_->tell("window"));

    tell_window(u"windowminimize"_s);
    EXPECT_TRUE(hides());
    tell_window(u"windowactivate"_s);
    EXPECT_TRUE(comes_to_the_game());
    ASSERT_TRUE(game_->tell("close"));
    EXPECT_TRUE(hides());
    start_game();
    EXPECT_TRUE(comes_to_the_game());
}

TEST_F(OverlayOnScreen, HidesBehindOtherProgramsAndStaysBesideOurDialogs)
{
    open(true);
    EXPECT_TRUE(comes_to_the_game());
    {
        const Told hidden(*overlay_, QEvent::Hide);
        QDialog ours;
        ours.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&ours));
        tell_window(u"windowmove"_s, {u"200"_s, u"100"_s});
        EXPECT_TRUE(comes_to_the_game());
        EXPECT_EQ(hidden.times, 0);
    }
    const test::GameProcess other(QProcessEnvironment::systemEnvironment(),
                                  {u"--records"_s, u"0"_s, u"--title"_s, u"Mail"_s});
    EXPECT_TRUE(hides());
    tell_window(u"windowactivate"_s);
    EXPECT_TRUE(comes_to_the_game());
}

TEST_F(OverlayOnScreen, NeverTakesTheFocusByItself)
{
    open(false);
    const auto expect_focus_on_game = [this](const char *after) {
        // What the window manager makes of a step has come by the time that it moves the game.
        const int x = host_.window_rect(window_).x;
        tell_window(u"windowmove"_s, {QString::number(x + 40), u"100"_s});
        EXPECT_TRUE(comes([&] { return host_.window_rect(window_).x != x; }));
        EXPECT_EQ(host_.foreground_window(), window_) << after;
    };
    const Told activated(*overlay_, QEvent::WindowActivate);
    expect_focus_on_game("opening");
    overlay_->move(400, 300);
    expect_focus_on_game("move");
    QMetaObject::invokeMethod(overlay_.get(), "refresh_data");
    expect_focus_on_game("refresh");
    overlay_->set_mode(0);
    expect_focus_on_game("mode");
    overlay_->set_font_size(20);
    expect_focus_on_game("size");
    overlay_->set_pinned(true);
    expect_focus_on_game("pin");
    overlay_->raise();
    expect_focus_on_game("raise");
    settings_.set(settings::overlay_click_through, true);
    expect_focus_on_game("clicks");
    overlay_->hide();
    expect_focus_on_game("hide");
    overlay_->show();
    expect_focus_on_game("show");
    EXPECT_EQ(activated.times, 0);
}

TEST_F(OverlayOnScreen, ClicksAreItsOwnUnlessItLetsThemThrough)
{
    QWidget below;
    below.setGeometry(600, 500, 500, 300);
    below.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&below));
    open(false);
    overlay_->move(650, 600);
    const Told through(below, QEvent::MouseButtonPress);
    const Told own(*overlay_, QEvent::MouseButtonPress);
    const QPoint place = overlay_->pos();
    for (const bool lets_through : {true, false, true}) {
        settings_.set(settings::overlay_click_through, lets_through);
        const int before = through.times + own.times;
        const int own_before = own.times;
        ASSERT_TRUE(comes([&] {
            click(place + QPoint(60, 4));
            QTest::qWait(1);
            return through.times + own.times > before;
        }));
        EXPECT_EQ(own.times > own_before, !lets_through);
        EXPECT_TRUE(overlay_->isVisible());
        EXPECT_EQ(overlay_->pos(), place);
    }
    const int before = through.times;
    click(place - QPoint(20, 20));
    EXPECT_TRUE(comes([&] { return through.times > before; }));
}

TEST_F(OverlayOnScreen, AWindowThatComesLateLeavesTheKeyboardToTheGame)
{
    QWidget below;
    below.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&below));
    const bool had_keyboard = has_keyboard();
    tell_window(u"windowactivate"_s);
    ASSERT_TRUE(comes([] { return !has_keyboard(); }));
    QDialog dialog(&below);
    open_late(dialog, had_keyboard);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    EXPECT_FALSE(dialog.isModal());
    EXPECT_FALSE(QTest::qWaitFor([&] { return host_.foreground_window() != window_; }, 200));
    below.activateWindow();
    EXPECT_TRUE(comes([&] { return dialog.isModal() && dialog.isActiveWindow(); }));
}

} // namespace
} // namespace tally::ui
