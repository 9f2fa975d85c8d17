#include "platform/host/fake/fake_host.h"
#include "support/kept_settings.h"
#include "ui/pinning/pin_state.h"
#include "ui/pinning/pinned_overlay.h"

#include <QWidget>

#include <gtest/gtest.h>

#include <atomic>

#ifdef __SANITIZE_ADDRESS__
// Of the sanitizer's runtime, whose header comes with another compiler.
extern "C" int __sanitizer_install_malloc_and_free_hooks( // NOLINT(bugprone-reserved-identifier)
    void (*allocated)(const volatile void *, std::size_t), void (*freed)(const volatile void *));
#endif

namespace tally::ui {
namespace {

using platform::FakeHost;
using Visibility = PinStep::Visibility;

constexpr std::uint32_t own_pid = 1;
constexpr std::uint32_t game_pid = 20;

class PinStates : public testing::Test {
protected:
    PinStates()
    {
        host.own_pid = own_pid;
        host.windows = {{2, u"Rise of Kingdoms", game_pid, {100, 50, 1000, 600, true}},
                        {3, u"Mail", 30}};
        host.processes[game_pid].image_path = u"C:\\rok.exe";
        host.foreground = 2;
    }

    PinState pinned(const PinPolicy &policy)
    {
        texts[key(policy.keys.pinned)] = QStringLiteral("1");
        return {host, policy, kept.settings};
    }

    template <typename T>
    static QString key(const Setting<T> &setting)
    {
        return QLatin1StringView(setting.key);
    }

    static void expect_move(const PinStep &step, int x, int y)
    {
        ASSERT_TRUE(step.move_to.has_value());
        EXPECT_EQ(step.move_to->x, x);
        EXPECT_EQ(step.move_to->y, y);
    }

    FakeHost host;
    test::KeptSettings kept;
    QHash<QString, QString> &texts = kept.texts;
    OverlayView overlay{{500, 300, 200, 100}, 1.0};
};

TEST_F(PinStates, ATickFollowsTheGameAndMovesOnlyWhenThatChangesSomething)
{
    PinState pin = pinned(statistics_pin);
    expect_move(pin.tick(overlay), 120, 130);
    overlay.box.x = 120;
    overlay.box.y = 130;
    EXPECT_FALSE(pin.tick(overlay).move_to.has_value());
    host.windows[0].rect.x += 30;
    expect_move(pin.tick(overlay), 150, 130);
    EXPECT_EQ(host.enumerations, 1) << "the steady state enumerates nothing";
}

TEST_F(PinStates, NothingHappensWhileUnpinnedDraggedOrClosing)
{
    PinState unpinned{host, statistics_pin, kept.settings};
    EXPECT_FALSE(unpinned.tick(overlay).move_to.has_value());
    PinState dragged = pinned(statistics_pin);
    dragged.begin_drag();
    EXPECT_FALSE(dragged.tick(overlay).move_to.has_value());
    PinState closing = pinned(statistics_pin);
    closing.begin_close();
    EXPECT_FALSE(closing.tick(overlay).move_to.has_value());
}

TEST_F(PinStates, TheStatisticsOverlayHidesBehindOthersButNotBehindThisProgram)
{
    PinState pin = pinned(statistics_pin);
    host.foreground = 3;
    EXPECT_EQ(pin.tick(overlay).visibility, Visibility::Hide);
    EXPECT_EQ(pin.tick(overlay).visibility, Visibility::Keep) << "hidden once";
    host.windows.push_back({4, u"Settings", own_pid});
    host.foreground = 4;
    const PinStep back = pin.tick(overlay);
    EXPECT_EQ(back.visibility, Visibility::Show);
    expect_move(back, 120, 130);
    host.foreground = platform::no_window;
    EXPECT_EQ(pin.tick(overlay).visibility, Visibility::Hide);
    host.windows[0].pid = 0; // it won't say
    EXPECT_EQ(pinned(statistics_pin).tick(overlay).visibility, Visibility::Hide);
}

TEST_F(PinStates, TheStatisticsOverlayHidesWithTheGameAndComesBackWithIt)
{
    PinState pin = pinned(statistics_pin);
    pin.tick(overlay);
    host.windows[0].minimised = true;
    EXPECT_EQ(pin.tick(overlay).visibility, Visibility::Hide);
    host.windows[0].minimised = false;
    EXPECT_EQ(pin.tick(overlay).visibility, Visibility::Show);

    const platform::FakeWindow game = host.windows[0];
    host.windows.erase(host.windows.begin());
    EXPECT_EQ(pin.tick(overlay).visibility, Visibility::Hide);
    EXPECT_EQ(pin.tick(overlay).visibility, Visibility::Keep);
    host.windows.push_back(game);
    host.windows.back().handle = 9; // another window: the game was started anew
    host.foreground = 9;
    EXPECT_EQ(pin.tick(overlay).visibility, Visibility::Show);
}

TEST_F(PinStates, TheHonorOverlayStaysAndFollowsEvenAMinimisedGame)
{
    PinState pin = pinned(honor_pin);
    host.foreground = 3;
    host.windows[0].minimised = true;
    const PinStep step = pin.tick(overlay);
    EXPECT_EQ(step.visibility, Visibility::Keep);
    expect_move(step, 120, 130);
    host.windows.clear();
    EXPECT_EQ(pin.tick(overlay).visibility, Visibility::Keep);
    EXPECT_FALSE(pin.tick(overlay).move_to.has_value());
}

TEST_F(PinStates, OnlyTheStatisticsOverlayCountsInLogicalPixels)
{
    PinState statistics = pinned(statistics_pin);
    for (const auto &[ratio, x, y] : {std::tuple(1.5, 87, 113), {1.0, 120, 130}, {2.0, 70, 105}}) {
        overlay.pixel_ratio = ratio; // which the user may change at any time
        expect_move(statistics.tick(overlay), x, y);
    }
    PinState honor = pinned(honor_pin);
    expect_move(honor.tick(overlay), 120, 130);
}

TEST_F(PinStates, PinningKeepsTheOverlayWhereItStands)
{
    for (const PinPolicy *policy : {&statistics_pin, &honor_pin}) {
        PinState pin{host, *policy, kept.settings};
        EXPECT_EQ(pin.set_pinned(true).visibility, Visibility::Keep);
        pin.anchor_here(overlay);
        EXPECT_EQ(texts[key(policy->keys.pinned)], u"1");
        EXPECT_EQ(texts[key(policy->keys.anchor)], u"tl");
        EXPECT_EQ(texts[key(policy->keys.off_x)], u"400");
        EXPECT_FALSE(pin.tick(overlay).move_to.has_value());
    }
}

TEST_F(PinStates, PinningWithoutAUsableGameLeavesTheStoredPlace)
{
    host.windows[0].minimised = true;
    for (const PinPolicy *policy : {&statistics_pin, &honor_pin}) {
        PinState pin{host, *policy, kept.settings};
        pin.set_pinned(true);
        pin.anchor_here(overlay);
        EXPECT_FALSE(texts.contains(key(policy->keys.anchor)));
    }
}

TEST_F(PinStates, UnpinningBringsAHiddenOverlayBack)
{
    PinState pin = pinned(statistics_pin);
    host.foreground = 3;
    ASSERT_EQ(pin.tick(overlay).visibility, Visibility::Hide);
    EXPECT_EQ(pin.set_pinned(false).visibility, Visibility::Show);
    EXPECT_EQ(pin.set_pinned(false).visibility, Visibility::Keep);
    EXPECT_EQ(texts[QStringLiteral("overlay_pinned")], u"0");
}

TEST_F(PinStates, ADragsEndIsStoredByTheRulesOfTheOverlay)
{
    overlay.box = {880, 500, 200, 100};
    PinState free{host, statistics_pin, kept.settings};
    free.end_drag(overlay);
    EXPECT_EQ(texts[QStringLiteral("overlay_x")], u"880");
    EXPECT_FALSE(texts.contains(QStringLiteral("overlay_pin_anchor")));

    texts.clear();
    PinState statistics = pinned(statistics_pin);
    statistics.tick(overlay);
    statistics.begin_drag();
    statistics.end_drag(overlay);
    EXPECT_FALSE(texts.contains(QStringLiteral("overlay_x")));
    EXPECT_EQ(texts[QStringLiteral("overlay_pin_anchor")], u"br");
    EXPECT_EQ(texts[QStringLiteral("overlay_pin_off_x")], u"20");
    EXPECT_EQ(texts[QStringLiteral("overlay_pin_off_y")], u"50");

    PinState honor = pinned(honor_pin);
    honor.end_drag(overlay); // before the first tick
    EXPECT_EQ(texts[QStringLiteral("honor_tracker_y")], u"500");
    EXPECT_EQ(texts[QStringLiteral("honor_tracker_pin_anchor")], u"br");
    EXPECT_EQ(texts[QStringLiteral("honor_tracker_pin_off_x")], u"220");
}

TEST_F(PinStates, ADragWhileTheGameIsGoneStoresNoPlace)
{
    PinState pin = pinned(statistics_pin);
    pin.tick(overlay);
    host.windows.clear();
    kept.writes = 0;
    pin.end_drag(overlay);
    EXPECT_EQ(kept.writes, 0);
}

#ifdef __SANITIZE_ADDRESS__
std::atomic<int> allocations = 0;

TEST_F(PinStates, ASteadyTickAllocatesNothing)
{
    QWidget widget;
    widget.show();
    PinState pin = pinned(statistics_pin);
    const auto tick = [&] {
        apply_pin_step(pin.tick(overlay_view(widget)), widget);
    };
    tick(); // finds the game and moves there
    __sanitizer_install_malloc_and_free_hooks(
        [](const volatile void *, std::size_t) { ++allocations; }, [](const volatile void *) {});
    const int before = allocations;
    for (int i = 0; i < 10; ++i)
        tick();
    EXPECT_EQ(allocations, before);
    const QString text = QString::number(before + 1);
    EXPECT_GT(allocations, before) << "they are counted: " << text.toStdString();
}
#endif

} // namespace
} // namespace tally::ui
