#include "ui/main_window.h"

#include "platform/identity.h"
#include "platform/updater/snooze.h"
#include "platform/updater/version_record.h"
#include "ui/parts/message_box.h"
#include "ui/parts/plain_label.h"
#include "ui/parts/quiet_modal.h"
#include "ui/update/update_dialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QStatusBar>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace tally::ui {

using namespace platform;

namespace {

constexpr QLatin1StringView version_key{"version"};

} // namespace

void MainWindow::add_update_entry(QMenu &menu)
{
    QAction *entry = menu.addAction(QStringLiteral("Check for &updates..."), this,
                                    [this] { check_for_updates(true); });
    if (const QString &by = around_.endpoint.updated_by; !by.isEmpty()) {
        entry->setEnabled(false);
        entry->setToolTip(QStringLiteral("New versions come from %1.").arg(by));
    }
}

void MainWindow::start_update_checks()
{
    if (update_timer_ || !around_.endpoint.updated_by.isEmpty())
        return;
    update_timer_ = new QTimer(this);
    connect(update_timer_, &QTimer::timeout, this, &MainWindow::on_update_tick);
    update_timer_->start(setup_.update_interval);
    QTimer::singleShot(setup_.update_delay, this, &MainWindow::on_update_tick);
}

void MainWindow::on_update_tick()
{
    check_for_updates(false);
}

void MainWindow::check_for_updates(bool manual)
{
    if (update_check_running_ || update_dialog_) {
        if (manual)
            show_message(QStringLiteral("Update check already in progress."), 4'000);
        return;
    }
    if (leaving_)
        return;
    update_check_running_ = true;
    // While the answer is on its way the event loop runs, and with it whatever the user does: he
    // may leave, and then the window may be gone.
    const QPointer<MainWindow> window(this);
    const auto stop = stop_update_check_;
    const auto record = Updater::fetch_version_info(
        around_.endpoint, {.time_limit = setup_.update_answer, .stop = stop.get()});
    if (!window || leaving_)
        return;
    update_check_running_ = false;
    if (!record) {
        if (manual)
            show_late_box(QMessageBox::Warning, QStringLiteral("Check for updates"),
                          QStringLiteral("Could not reach the update server. Check your network "
                                         "connection and try again."),
                          this);
    } else if (Updater::is_newer(Updater::record_text(*record, version_key), application_version)) {
        offer_update(*record, manual);
    } else {
        tell_up_to_date(manual);
    }
}

void MainWindow::tell_up_to_date(bool manual)
{
    if (Updater::snoozed_until(&around_.db))
        Updater::clear_snooze(&around_.db);
    if (manual)
        show_late_box(
            QMessageBox::Information, QStringLiteral("Up to date"),
            QStringLiteral("You are running the latest version (%1).").arg(application_version),
            this);
}

void MainWindow::offer_update(const QJsonObject &record, bool manual)
{
    const QString latest = Updater::record_text(record, version_key);
    const bool is_snoozed = Updater::is_snoozed(&around_.db, latest, around_.clock);
    const bool has_expired = Updater::snooze_expired(&around_.db, latest, around_.clock);
    if (!manual && is_snoozed && !has_expired)
        return;
    UpdateSetup setup{.endpoint = around_.endpoint, .clock = around_.clock};
    if (setup_.adjust_update)
        setup_.adjust_update(setup);
    update_dialog_ = new UpdateDialog(record, &around_.db, QCoreApplication::applicationFilePath(),
                                      has_expired, this, std::move(setup));
    connect(update_dialog_, &QDialog::finished, this, &MainWindow::on_update_dialog_finished);
    open_quietly(*update_dialog_);
}

void MainWindow::on_update_dialog_finished()
{
    const bool is_installing = update_dialog_->install_started();
    update_dialog_->delete_when_ended();
    update_dialog_ = nullptr;
    if (is_installing)
        request_exit();
}

void MainWindow::request_end_of_updates()
{
    *stop_update_check_ = true;
    for (UpdateDialog *dialog : findChildren<UpdateDialog *>())
        dialog->request_end();
}

bool MainWindow::wait_for_updates(QDeadlineTimer deadline)
{
    const QList<UpdateDialog *> dialogs = findChildren<UpdateDialog *>();
    return std::all_of(dialogs.begin(), dialogs.end(),
                       [deadline](UpdateDialog *dialog) { return dialog->wait_until(deadline); });
}

void MainWindow::tell_of_unclean_update(const QString &backup)
{
    QString text = QStringLiteral("The last update did not start cleanly.");
    if (!backup.isEmpty())
        text += QStringLiteral(" The version before it lies in %1.")
                    .arg(QDir::toNativeSeparators(backup));
    QLabel *notice = plain_label(text);
    notice->setObjectName(QStringLiteral("updateNotice"));
    notice->setToolTip(text);
    notice->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // Behind the messages of the start, and back when they are over: what is added while one stands
    // would stay hidden.
    const QString message = statusBar()->currentMessage();
    statusBar()->clearMessage();
    statusBar()->addWidget(notice, 1);
    show_message(message, 5'000);
}

} // namespace tally::ui
