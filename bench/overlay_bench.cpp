// What the statistics overlay costs while nothing happens: pinned to a window under a window
// manager, and a refresh with nothing new. overlay_bench [SECONDS]

#include "filled_store.h"
#include "idle_cost.h"
#include "platform/host/fake/fake_host.h"
#include "platform/host/system_host.h"
#include "settings/catalogue.h"
#include "support/x_session.h"
#include "ui/chains/chain_tracker_tab.h"
#include "ui/overlay/overlay_source.h"
#include "ui/overlay/overlay_window.h"

#include <QApplication>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

using namespace tally;
using namespace tally::bench;

constexpr int default_seconds = 60;
constexpr int warm_up_ms = 4'000; // more than an interval of refreshes
constexpr int refreshes = 2'000;
constexpr int rounds = 200'000;

class Page final : public ui::OverlaySource {
public:
    explicit Page(const ui::Surroundings &around) : tab_(around, 1.0) {}

    std::optional<ui::ChainFilter> current_chain_filter() const override
    {
        return tab_.current_filter();
    }
    QString current_tab_title() const override { return QStringLiteral("Chain Tracker"); }

private:
    ui::ChainTrackerTab tab_;
};

void measure_ticks(ui::Surroundings around, int seconds)
{
    const std::unique_ptr<platform::Host> host = platform::make_system_host();
    QWidget game;
    game.setWindowTitle(QStringLiteral("Rise of Kingdoms"));
    game.setGeometry(100, 100, 900, 700);
    game.show();
    if (!QTest::qWaitForWindowActive(&game))
        return std::puts("no window manager"), void();
    const double bare = share_of_bare_timer(seconds);
    const ui::Surroundings real{.db = around.db,
                                .queries = around.queries,
                                .settings = around.settings,
                                .host = *host,
                                .icon_dir = around.icon_dir};
    around.settings.set(settings::overlay_pinned, true);
    ui::OverlayWindow overlay(real, nullptr, 1.0);
    overlay.show();
    run_events(warm_up_ms);
    if (!overlay.isVisible())
        return std::puts("the overlay does not follow"), void();
    const double pinned = share(seconds);
    std::printf("pinned for %d s: %.3f %% of a core, a bare timer %.3f %%\n", seconds, pinned,
                bare);
    print_figure("overlay_tick_core_percent", pinned, Goal::at_most, 0.3);
    around.settings.set(settings::overlay_pinned, false);
}

void measure_refreshes(const ui::Surroundings &around)
{
    const Page page(around);
    for (const int mode : {0, 1}) {
        ui::OverlayWindow overlay(around, &page, 1.0);
        overlay.set_mode(mode);
        overlay.show();
        const auto refresh = [&overlay] {
            QMetaObject::invokeMethod(&overlay, "refresh_data");
        };
        run_events(100);
        const double nothing_new = microseconds_a_call(refreshes, refresh);
        int ap_source = 0;
        const double asked = microseconds_a_call(50, [&] {
            around.db.free_ap_mode = ++ap_source % 2;
            refresh();
        });
        std::printf("a refresh in mode %d, nothing new: %.1f µs; asked anew, mostly remembered: "
                    "%.0f µs (%.0f times)\n",
                    mode, nothing_new, asked, asked / nothing_new);
        print_figure(mode == 0 ? "overlay_idle_refresh_ms"
                               : "overlay_idle_refresh_without_icons_ms",
                     nothing_new / 1e3, Goal::at_most, 0.2);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const int seconds = argc > 1 ? std::atoi(argv[1]) : default_seconds;
    const test::XSession session;
    if (!session.running() || seconds <= 0) {
        std::fputs("usage: overlay_bench [SECONDS] (needs Xvfb and openbox)\n", stderr);
        return 2;
    }
    qputenv("DISPLAY", session.display());
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(argc, argv);
    FilledStore store(rounds);
    platform::FakeHost host;
    const ui::Surroundings around = store.surroundings(host);
    measure_refreshes(around);
    measure_ticks(around, seconds);
}
