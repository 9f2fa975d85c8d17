#include "platform/host/fake/fake_host.h"
#include "platform/host/game_windows.h"

#include <gtest/gtest.h>

namespace tally::platform {
namespace {

FakeHost host_with_two_games()
{
    FakeHost host;
    host.windows = {{1, u"Mail", 10},
                    {2, u"RISE OF KINGDOMS - Second account", 20},
                    {3, u"Rise of Kingdoms", 30},
                    {4, u"", 40},
                    {5, u"Rise of Kingdoms", 50}};
    host.windows[4].visible = false;
    host.processes[20].image_path = u"C:\\Games\\RoK.exe";
    host.processes[30].image_path = u"D:\\nox\\app.exe";
    return host;
}

TEST(GameWindows, AreVisibleHoldTheTitleInAnyCaseAndKeepTheirOrder)
{
    FakeHost host = host_with_two_games();
    const auto found = find_game_windows(host, QStringLiteral("rise OF Kingdoms"));
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0].hwnd, 2U);
    EXPECT_EQ(found[0].title, u"RISE OF KINGDOMS - Second account");
    EXPECT_EQ(found[0].pid, 20U);
    EXPECT_EQ(found[0].exe_path, u"C:\\Games\\RoK.exe");
    EXPECT_EQ(found[1].hwnd, 3U);
}

TEST(GameWindows, StayInTheListWithoutAProcessOrPath)
{
    FakeHost host;
    host.windows = {{1, u"Rise of Kingdoms", 0}, {2, u"Rise of Kingdoms", 99}};
    const auto found = find_game_windows(host);
    ASSERT_EQ(found.size(), 2);
    EXPECT_TRUE(found[0].exe_path.isEmpty());
    EXPECT_EQ(found[1].pid, 99U);
    EXPECT_TRUE(found[1].exe_path.isEmpty());
}

TEST(GameWindows, TheTargetIsFoundByPathElseTheTopmostIsTaken)
{
    FakeHost host = host_with_two_games();
    const auto windows = find_game_windows(host);
    EXPECT_EQ(pick_game_window(windows, QStringLiteral("d:\\NOX\\app.EXE"))->hwnd, 3U);
    EXPECT_EQ(pick_game_window(windows, QStringLiteral("D:\\elsewhere.exe"))->hwnd, 2U);
    EXPECT_EQ(pick_game_window(windows, QString{})->hwnd, 2U);
    EXPECT_EQ(pick_game_window({}, QStringLiteral("d:\\nox\\app.exe")), nullptr);
}

TEST(GameWindows, OneThatIsGoneHiddenOrMinimisedIsNotUsable)
{
    FakeHost host = host_with_two_games();
    EXPECT_TRUE(window_usable(host, 3));
    EXPECT_FALSE(window_usable(host, no_window));
    EXPECT_FALSE(window_usable(host, 99));
    EXPECT_FALSE(window_usable(host, 5));
    host.windows[2].minimised = true;
    EXPECT_FALSE(window_usable(host, 3));
}

TEST(GameWindows, ImagePathsAreClassifiedByTheFirstSignInOrder)
{
    const std::pair<const char16_t *, const char16_t *> cases[] = {
        {u"", u"unknown"},
        {u"C:\\Games\\RoK.exe", u"native"},
        {u"C:\\SANDBOXIE\\start.exe", u"sandbox: Sandboxie"},
        {u"C:\\Sandbox\\user\\rok.exe", u"sandbox: Sandbox"},
        {u"C:\\sandbox-tools.exe", u"native"},
        {u"/home/sandbox/rok", u"native"},
        {u"C:\\BlueStacks_nxt\\HD-Player.exe", u"sandbox: BlueStacks"},
        {u"D:\\mumu\\Nox\\nox.exe", u"sandbox: NoxPlayer"},
        {u"C:\\LDPlayer\\dnplayer.exe", u"sandbox: LDPlayer"},
        {u"C:\\MEmuPlayer.exe", u"sandbox: MEmu"},
        {u"C:\\GameLoop\\aow.exe", u"sandbox: GameLoop"},
        {u"C:\\MuMuPlayer\\m.exe", u"sandbox: MuMu"},
        {u"/opt/genymotion/player", u"sandbox: Genymotion"},
    };
    for (const auto &[path, classification] : cases) {
        EXPECT_EQ(classify_exe_path(QString::fromUtf16(path)), QString::fromUtf16(classification));
    }
}

} // namespace
} // namespace tally::platform
