#include "fake_game/game_process.h"
#include "platform/host/game_windows.h"
#include "platform/host/x11/x11_host.h"

#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace tally::platform {
namespace {

using tally::test::GameProcess;
using tally::test::XSession;

constexpr int bound_ms = 20'000;

QStringList titled(const QString &title)
{
    return {QStringLiteral("--records"), QStringLiteral("0"), QStringLiteral("--title"), title};
}

class X11Windowed : public testing::Test {
protected:
    explicit X11Windowed(XSession::Manager manager) : session_(manager) {}

    void SetUp() override
    {
        if (!session_.running())
            GTEST_SKIP() << "Xvfb or openbox cannot be started";
    }

    /// Has xdotool do something to a window.
    void tell(const QString &command, WindowHandle window, const QStringList &rest = {})
    {
        QProcess tool;
        tool.setProcessEnvironment(session_.environment());
        tool.start(QStringLiteral("xdotool"), QStringList{command, QString::number(window)} + rest);
        ASSERT_TRUE(tool.waitForFinished(bound_ms));
        ASSERT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().toStdString();
    }

    /// The only window of the game, once it is shown.
    GameWindowInfo only_window()
    {
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return find_game_windows(host_).size() == 1; }, bound_ms));
        const auto windows = find_game_windows(host_);
        return windows.isEmpty() ? GameWindowInfo{} : windows.first();
    }

    /// Whether one look comes to tell what the questions tell one by one.
    bool look_agrees(WindowHandle window)
    {
        const auto all_of = [](const WindowLook &look) {
            return std::tuple(look.usable, look.process_id, look.foreground_process_id, look.rect.x,
                              look.rect.y, look.rect.w, look.rect.h, look.rect.valid);
        };
        const auto agrees = [&] {
            return all_of(host_.look_at(window)) == all_of(host_.Host::look_at(window));
        };
        return QTest::qWaitFor(agrees, bound_ms);
    }

    XSession session_;
    X11Host host_{session_.display().toStdString()};
};

class X11 : public X11Windowed, public testing::WithParamInterface<XSession::Manager> {
protected:
    X11() : X11Windowed(GetParam()) {}

    static bool managed() { return GetParam() == XSession::Manager::Openbox; }
};

class ManagedX11 : public X11Windowed {
protected:
    ManagedX11() : X11Windowed(XSession::Manager::Openbox) {}
};

TEST_P(X11, AWindowIsKnownByTitleProcessImageAndPlace)
{
    const GameProcess game{session_, titled(QStringLiteral("RISE OF KINGDOMS – 北"))};
    ASSERT_TRUE(game.ready());
    const GameWindowInfo window = only_window();
    EXPECT_EQ(window.title, QStringLiteral("RISE OF KINGDOMS – 北"));
    EXPECT_EQ(window.pid, game.pid());
    EXPECT_TRUE(window.exe_path.endsWith(u"/fake_game"));
    EXPECT_TRUE(window_usable(host_, window.hwnd));

    const WindowRect rect = host_.window_rect(window.hwnd);
    ASSERT_TRUE(rect.valid);
    if (managed()) { // the frame counts as well
        EXPECT_GE(rect.w, 640);
        EXPECT_GT(rect.h, 360);
        EXPECT_LT(rect.h, 420);
    } else {
        EXPECT_EQ(std::tie(rect.x, rect.y, rect.w, rect.h), std::make_tuple(120, 90, 640, 360));
    }
}

TEST_P(X11, OfTwoWindowsOfOneImageTheUpperComesFirst)
{
    const GameProcess lower{session_, titled(QStringLiteral("Rise of Kingdoms"))};
    ASSERT_TRUE(lower.ready());
    const WindowHandle first_shown = only_window().hwnd;
    const GameProcess upper{session_, titled(QStringLiteral("Rise of Kingdoms"))};
    ASSERT_TRUE(upper.ready());
    const auto topmost_is = [&](std::uint32_t pid) {
        const auto windows = find_game_windows(host_);
        return windows.size() == 2 && windows.first().pid == pid;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return topmost_is(upper.pid()); }, bound_ms));
    tell(QStringLiteral("windowraise"), first_shown);
    EXPECT_TRUE(QTest::qWaitFor([&] { return topmost_is(lower.pid()); }, bound_ms));
}

TEST_P(X11, AClosedWindowIsNoWindow)
{
    GameProcess game{session_, titled(QStringLiteral("Rise of Kingdoms"))};
    ASSERT_TRUE(game.ready());
    const WindowHandle window = only_window().hwnd;
    ASSERT_TRUE(game.tell("close"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !host_.window_exists(window); }, bound_ms));
    EXPECT_TRUE(QTest::qWaitFor([&] { return find_game_windows(host_).isEmpty(); }, bound_ms));
    EXPECT_FALSE(window_usable(host_, window));
    EXPECT_FALSE(host_.window_rect(window).valid);
    EXPECT_EQ(host_.window_process_id(window), 0U);
    EXPECT_TRUE(host_.window_title(window).empty());
    EXPECT_TRUE(look_agrees(window));
    EXPECT_TRUE(look_agrees(no_window));
}

TEST_P(X11, TheWindowWithTheFocusIsInTheForeground)
{
    const GameProcess game{session_, titled(QStringLiteral("Rise of Kingdoms"))};
    ASSERT_TRUE(game.ready());
    const WindowHandle window = only_window().hwnd;
    tell(managed() ? QStringLiteral("windowactivate") : QStringLiteral("windowfocus"), window);
    EXPECT_TRUE(QTest::qWaitFor([&] { return host_.foreground_window() == window; }, bound_ms));
    EXPECT_TRUE(look_agrees(window));
}

TEST_F(ManagedX11, AMinimisedWindowIsListedButNotUsable)
{
    const GameProcess game{session_, titled(QStringLiteral("Rise of Kingdoms"))};
    ASSERT_TRUE(game.ready());
    const WindowHandle window = only_window().hwnd;
    tell(QStringLiteral("windowminimize"), window);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window_usable(host_, window); }, bound_ms));
    EXPECT_TRUE(host_.window_exists(window));
    EXPECT_EQ(only_window().hwnd, window);
    EXPECT_TRUE(look_agrees(window));
    tell(QStringLiteral("windowactivate"), window);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window_usable(host_, window); }, bound_ms));
}

TEST_P(X11, AWindowThatIsMovedTellsItsNewPlace)
{
    const GameProcess game{session_, titled(QStringLiteral("Rise of Kingdoms"))};
    ASSERT_TRUE(game.ready());
    const WindowHandle window = only_window().hwnd;
    const WindowRect before = host_.look_at(window).rect; // which is kept
    tell(QStringLiteral("windowmove"), window, {QStringLiteral("300"), QStringLiteral("200")});
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            const WindowRect now = host_.look_at(window).rect;
            return now.x == 300 && now.y == 200 && now.w == before.w && now.h == before.h;
        },
        bound_ms));
}

INSTANTIATE_TEST_SUITE_P(Sessions, X11,
                         testing::Values(XSession::Manager::None, XSession::Manager::Openbox),
                         [](const auto &session) {
                             return session.param == XSession::Manager::None ? "Bare" : "Managed";
                         });

TEST(X11Host, WithoutAServerEveryQuestionIsAnsweredWithNothing)
{
    X11Host host{":-1"};
    EXPECT_TRUE(host.top_level_windows().empty());
    EXPECT_FALSE(host.window_exists(7));
    EXPECT_FALSE(host.window_visible(7));
    EXPECT_FALSE(host.window_minimised(7));
    EXPECT_TRUE(host.window_title(7).empty());
    EXPECT_EQ(host.window_process_id(7), 0U);
    EXPECT_FALSE(host.window_rect(7).valid);
    EXPECT_EQ(host.foreground_window(), no_window);
}

} // namespace
} // namespace tally::platform
