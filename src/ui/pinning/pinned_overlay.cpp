#include "ui/pinning/pinned_overlay.h"

#include "ui/pinning/game_window_selector.h"
#include "ui/pinning/setting_menus.h"

#include <QAction>
#include <QGuiApplication>
#include <QMenu>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace tally::ui {
namespace {

/// Widget and window are told apart: the widget itself would be hidden and made anew.
void set_click_through(QWidget &overlay, bool on)
{
    overlay.overrideWindowFlags(overlay.windowFlags().setFlag(Qt::WindowTransparentForInput, on));
    if (QWindow *native = overlay.windowHandle())
        native->setFlag(Qt::WindowTransparentForInput, on);
}

} // namespace

void make_overlay(QWidget &overlay, double opacity)
{
    overlay.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    overlay.setAttribute(Qt::WA_ShowWithoutActivating);
    overlay.setWindowOpacity(opacity);
}

void follow_click_through(QWidget &overlay, Settings &settings, const Setting<bool> &setting)
{
    set_click_through(overlay, settings.get(setting));
    settings.on_change(setting, &overlay, [&overlay](bool on) { set_click_through(overlay, on); });
}

void come_to_a_screen(QWidget &overlay)
{
    const auto screens = QGuiApplication::screens();
    const bool is_on_one = std::ranges::any_of(screens, [&overlay](const QScreen *screen) {
        return screen->geometry().intersects(overlay.geometry());
    });
    if (!is_on_one && !screens.isEmpty())
        overlay.move(QGuiApplication::primaryScreen()->availableGeometry().topLeft());
}

OverlayView overlay_view(const QWidget &overlay)
{
    const QWindow *native = overlay.windowHandle();
    const QScreen *screen = native != nullptr ? native->screen() : overlay.screen();
    const OverlayBox box{overlay.x(), overlay.y(), overlay.width(), overlay.height()};
    if (screen == nullptr)
        return {box};
    const QPoint corner = screen->geometry().topLeft();
    return {box, screen->devicePixelRatio(), {corner.x(), corner.y()}};
}

void apply_pin_step(const PinStep &step, QWidget &overlay)
{
    if (step.visibility == PinStep::Visibility::Hide)
        overlay.hide();
    if (step.move_to) // before it is shown elsewhere
        overlay.move(step.move_to->x, step.move_to->y);
    if (step.visibility == PinStep::Visibility::Show)
        overlay.show();
}

bool select_game_window(PinState &pin, const QList<platform::GameWindowInfo> &windows,
                        QWidget &overlay)
{
    if (windows.isEmpty())
        return true;
    // The overlay owns the dialog, and may be closed and destroyed while the dialog is shown.
    const QPointer<GameWindowSelector> dialog =
        new GameWindowSelector{windows, pin.target_exe(), &overlay};
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (dialog.isNull())
        return false;
    if (accepted)
        pin.choose_target(dialog->chosen_exe_path());
    delete dialog;
    return true;
}

void set_overlay_pinned(PinState &pin, bool pinned, QWidget &overlay, QTimer &pin_timer)
{
    apply_pin_step(pin.set_pinned(pinned), overlay);
    if (!pinned) {
        pin_timer.stop();
        return;
    }
    if (!select_game_window(pin, pin.windows_to_choose_from(), overlay))
        return;
    pin.anchor_here(overlay_view(overlay));
    pin_timer.start(pin_interval_ms);
}

void add_pin_actions(QMenu &menu, PinState &pin, Settings &settings, QWidget &overlay)
{
    add_pin_switch(menu, settings, pin.keys().pinned);
    QAction *select = menu.addAction(QStringLiteral("Select game window..."));
    const auto windows = pin.game_windows();
    select->setEnabled(windows.size() > 1);
    QObject::connect(select, &QAction::triggered, &overlay,
                     [&pin, windows, &overlay] { select_game_window(pin, windows, overlay); });
}

} // namespace tally::ui
