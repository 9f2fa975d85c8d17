#include "ui/main_window.h"

#include "services/keep_cooldown_service.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/alerts/barbarian_keep_overlay.h"
#include "ui/alerts/keep_toast.h"
#include "ui/alerts/tray_manager.h"
#include "ui/settings/settings_dialog.h"
#include "ui/start_up_chain.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QEventLoopLocker>
#include <QTimer>

namespace tally::ui {

void MainWindow::start_keep_service()
{
    using services::KeepCooldownService;
    KeepCooldownService::install_notice([](const QString &title, const QString &text) {
        (new KeepToast(title, text))->show_toast();
    });
    keep_service_ =
        new KeepCooldownService(&around_.db, &around_.settings, nullptr, this, around_.clock);
    keep_service_->set_kill_query([this](const auto &found, const auto &failed) {
        last_kill_.ask(
            [](const data::TallyDb &db, const queries::IsOutdated &) {
                return KeepCooldownService::last_kill(db);
            },
            found, failed);
    });
    connect(keep_service_, &KeepCooldownService::keepReady, this,
            [] { (new BarbarianKeepOverlay)->show_centered(); });
}

void MainWindow::start_tray()
{
    if (!tray_) {
        auto *tray = new TrayManager(
            QCoreApplication::applicationDirPath() + QStringLiteral("/../resources/icons"), this);
        if (tray->has_tray())
            connect_tray(tray);
        else
            tray->deleteLater();
    }
    keep_service_->set_tray(tray_);
}

void MainWindow::connect_tray(TrayManager *tray)
{
    tray_ = tray;
    connect(tray, &TrayManager::showRequested, this, &MainWindow::bring_to_front);
    connect(tray, &TrayManager::overlayToggle, overlay_action_, &QAction::toggle);
    connect(tray, &TrayManager::exitRequested, this, &MainWindow::request_exit);
}

void MainWindow::go_on_in_tray()
{
    // Qt ends the program with its last window, of which a hidden one is none: the next dialog or
    // notice that closes would take it along.
    in_tray_ = std::make_unique<QEventLoopLocker>();
    hide();
    if (around_.settings.get(settings::tray_notice_shown))
        return;
    around_.settings.set(settings::tray_notice_shown, true);
    tray_->tell(QStringLiteral("Tallyhand goes on in the tray."));
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    save_window_state();
    if (!leaving_ && tray_ && tray_->has_tray()) {
        event->ignore();
        return go_on_in_tray();
    }
    chain_->stop_watcher();
    if (tray_)
        tray_->hide_tray();
    QWidget::closeEvent(event);
    in_tray_.reset();
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    // Its native window comes up only after this; until then the program would count as one without
    // windows.
    QTimer::singleShot(0, this, [this] {
        if (isVisible())
            in_tray_.reset();
    });
}

void MainWindow::on_open_settings()
{
    auto *dialog = new SettingsDialog(&around_.settings, keep_service_, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

} // namespace tally::ui
