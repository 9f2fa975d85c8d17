#include "honor/game_memory_reader.h"
#include "honor/honor_summary_service.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/honor/honor_summary_overlay.h"
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

void MainWindow::make_honor_service()
{
    auto reader = std::make_shared<honor::GameMemoryReader>(
        around_.host, around_.settings.get(settings::honor_tracker_target_exe), around_.clock);
    honor_service_ = new honor::HonorSummaryService(around_.db, around_.queries, std::move(reader),
                                                    around_.clock, this);
}

void MainWindow::let_honor_tracker_begin()
{
    if (honor_overlay_ && !honor_service_->cycling())
        honor_service_->start();
}

void MainWindow::on_toggle_honor_tracker(bool show)
{
    if (!show) {
        if (honor_overlay_) {
            honor_overlay_->set_persist_visibility_on_close(true);
            honor_overlay_->close();
        }
        return;
    }
    if (!honor_overlay_) {
        honor_overlay_ = new honor::HonorSummaryOverlay(around_, honor_service_);
        connect(honor_overlay_, &honor::HonorSummaryOverlay::overlayClosed, this,
                &MainWindow::on_honor_overlay_closed);
    }
    honor_overlay_->show();
    honor_overlay_->raise();
    around_.settings.set(settings::honor_tracker_visible, true);
}

void MainWindow::on_honor_overlay_closed()
{
    const QSignalBlocker blocker(honor_action_);
    honor_action_->setChecked(false);
    if (honor_overlay_)
        honor_overlay_->deleteLater();
    honor_overlay_.clear();
}

void MainWindow::open_remembered_overlays()
{
    if (leaving_)
        return;
    if (around_.settings.get(settings::overlay_visible))
        overlay_action_->setChecked(true);
    if (around_.settings.get(settings::honor_tracker_visible))
        honor_action_->setChecked(true);
}

void MainWindow::keep_overlays_remembered()
{
    if (overlay_)
        overlay_->set_persist_visibility_on_close(false);
    if (honor_overlay_)
        honor_overlay_->set_persist_visibility_on_close(false);
}

} // namespace tally::ui
