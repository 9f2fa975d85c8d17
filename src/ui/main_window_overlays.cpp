#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/main_window.h"
#include "ui/overlay/overlay_window.h"

#include <QAction>
#include <QSignalBlocker>

namespace tally::ui {

void MainWindow::on_toggle_overlay(bool show)
{
    if (!show) {
        if (overlay_) {
            overlay_->set_persist_visibility_on_close(true);
            overlay_->close();
        }
        return;
    }
    if (!overlay_) {
        overlay_ = new OverlayWindow(around_, this, barbarian_btype);
        connect(overlay_, &OverlayWindow::overlayClosed, this, &MainWindow::on_overlay_closed);
    }
    overlay_->show();
    overlay_->raise();
    around_.settings.set(settings::overlay_visible, true);
}

void MainWindow::on_overlay_closed()
{
    const QSignalBlocker blocker(overlay_action_);
    overlay_action_->setChecked(false);
    if (overlay_)
        overlay_->deleteLater();
    overlay_.clear();
}

void MainWindow::open_remembered_overlays()
{
    if (leaving_)
        return;
    if (around_.settings.get(settings::overlay_visible))
        overlay_action_->setChecked(true);
}

void MainWindow::keep_overlays_remembered()
{
    if (overlay_)
        overlay_->set_persist_visibility_on_close(false);
}

} // namespace tally::ui
