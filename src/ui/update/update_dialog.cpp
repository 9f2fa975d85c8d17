#include "ui/update/update_dialog.h"

#include "platform/identity.h"
#include "platform/updater/snooze.h"
#include "platform/updater/update_log.h"
#include "ui/parts/message_box.h"
#include "ui/parts/plain_label.h"
#include "ui/update/download_worker.h"
#include "ui/update/update_texts.h"

#include <QCloseEvent>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QThread>
#include <QVBoxLayout>

#include <algorithm>

namespace tally::ui {

using namespace platform;
using Updater::log_update;
using Updater::UpdateForm;

namespace {

constexpr int patience = 3'000; // ms, for a download that was told to end

} // namespace

UpdateDialog::UpdateDialog(QJsonObject record, data::TallyDb *db, QString app_path, bool forced,
                           QWidget *parent, UpdateSetup setup)
    : QDialog(parent), record_(std::move(record)), db_(db), app_path_(std::move(app_path)),
      forced_(forced), setup_(std::move(setup))
{
    setWindowTitle(QStringLiteral("Update available"));
    setModal(true);
    build();
    show_offer();
    fit_to_texts();
    qCInfo(log_update).noquote() << "offering" << version() << (forced_ ? "(required)" : "");
}

UpdateDialog::~UpdateDialog()
{
    request_end();
    if (wait_until(QDeadlineTimer(patience)))
        return;
    // It ends some time and is then deleted; a thread must not be destroyed while it runs.
    worker_thread_->disconnect(this);
    worker_thread_->setParent(nullptr);
}

void UpdateDialog::build()
{
    title_label_ = plain_label({}, QStringLiteral("font-size: 14pt; font-weight: bold; "
                                                  "color: #5865f2;"));
    info_label_ = plain_label({}, QStringLiteral("font-size: 10pt;"));
    info_label_->setTextFormat(Qt::RichText);
    info_label_->setWordWrap(true);
    progress_bar_ = new QProgressBar;
    progress_bar_->setRange(0, 100);
    progress_bar_->setFormat(QStringLiteral("%p%"));
    progress_bar_->setAccessibleName(QStringLiteral("Download"));
    progress_bar_->hide();
    status_label_ = plain_label({}, QStringLiteral("font-size: 9pt; color: #888;"));
    status_label_->hide();
    download_button_ = new QPushButton(QStringLiteral("Download && Install"));
    download_button_->setDefault(true);
    connect(download_button_, &QPushButton::clicked, this, &UpdateDialog::on_download);
    later_button_ = new QPushButton(QStringLiteral("Later (24h)"));
    connect(later_button_, &QPushButton::clicked, this, &UpdateDialog::on_later);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    for (QWidget *widget :
         {static_cast<QWidget *>(title_label_), static_cast<QWidget *>(info_label_),
          static_cast<QWidget *>(progress_bar_), static_cast<QWidget *>(status_label_)})
        layout->addWidget(widget);
    layout->addStretch();
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(download_button_);
    buttons->addWidget(later_button_);
    layout->addLayout(buttons);
}

void UpdateDialog::show_offer()
{
    title_label_->setText(forced_ ? QStringLiteral("Update required")
                                  : QStringLiteral("New version available"));
    info_label_->setText(offer_text(record_, application_version, forced_));
    later_button_->setVisible(!forced_);
    if (forced_)
        setWindowFlag(Qt::WindowCloseButtonHint, false);
}

/// 500 by 260, and as much higher as large fonts need while all of it is shown.
void UpdateDialog::fit_to_texts()
{
    constexpr QSize usual(500, 260);
    for (QWidget *widget :
         {static_cast<QWidget *>(progress_bar_), static_cast<QWidget *>(status_label_)})
        widget->setVisible(true);
    status_label_->setText(QStringLiteral(" "));
    ensurePolished();
    const int needed = layout()->totalHeightForWidth(usual.width());
    for (QWidget *widget :
         {static_cast<QWidget *>(progress_bar_), static_cast<QWidget *>(status_label_)})
        widget->setVisible(false);
    setFixedSize(usual.width(), std::max(usual.height(), needed));
}

QString UpdateDialog::version() const
{
    return Updater::record_text(record_, QLatin1StringView("version"));
}

QString UpdateDialog::refusal() const
{
    const Updater::UpdateFile file = Updater::update_file(record_);
    if (!Updater::is_newer(version(), application_version))
        return QStringLiteral("%1 is not newer than %2.").arg(version(), application_version);
    if (file.url.isEmpty())
        return QStringLiteral("The update server names no file.");
    if (!file.has_usable_hash())
        return QStringLiteral("The update server names a hash that is none: \"%1\".")
            .arg(file.sha256.left(80));
    return Updater::obstacle_to(file.form, app_path_, Updater::is_elevated(), setup_.tools);
}

void UpdateDialog::on_download()
{
    show_downloading();
    if (const QString reason = refusal(); !reason.isEmpty()) {
        qCWarning(log_update).noquote() << "not downloaded:" << reason;
        return on_download_finished(false, reason);
    }
    start_download();
}

void UpdateDialog::show_downloading()
{
    download_button_->setEnabled(false);
    download_button_->setText(QStringLiteral("Downloading..."));
    later_button_->hide();
    progress_bar_->setValue(0);
    progress_bar_->show();
    status_label_->setText(QStringLiteral("Preparing download..."));
    status_label_->show();
}

void UpdateDialog::start_download()
{
    const Updater::UpdateFile file = Updater::update_file(record_);
    is_payload_ = file.form == UpdateForm::Payload;
    const QDir folder(setup_.updates_dir);
    folder.mkpath(QStringLiteral("."));
    dest_path_ = folder.filePath(is_payload_ ? QStringLiteral("payload-%1.zip").arg(version())
                                             : QStringLiteral("tallyhand-new.exe"));
    if (worker_thread_) {
        worker_thread_->quit();
        worker_thread_->wait(patience);
    }

    stop_ = std::make_shared<Updater::StopFlag>(false);
    auto *worker = new DownloadWorker({.url = file.url,
                                       .dest_path = dest_path_,
                                       .sha256 = file.sha256,
                                       .size_limit = Updater::size_limit_for(file.size),
                                       .endpoint = setup_.endpoint},
                                      stop_);
    auto *thread = new QThread(this);
    worker_thread_ = thread;
    worker->moveToThread(thread);
    connect(thread, &QThread::started, worker, &DownloadWorker::run);
    connect(worker, &DownloadWorker::progress, this, &UpdateDialog::on_progress,
            Qt::QueuedConnection);
    connect(worker, &DownloadWorker::finished, this, &UpdateDialog::on_download_finished,
            Qt::QueuedConnection);
    connect(worker, &DownloadWorker::finished, worker, &QObject::deleteLater);
    connect(worker, &DownloadWorker::finished, thread, &QThread::quit);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}

void UpdateDialog::on_progress(qlonglong done, qlonglong total)
{
    progress_bar_->setValue(progress_percent(done, total));
    status_label_->setText(progress_text(done, total));
}

void UpdateDialog::on_download_finished(bool ok, const QString &error)
{
    if (ending_ || (stop_ && *stop_))
        return;
    if (ok)
        return install();
    show_late_box(QMessageBox::Critical, QStringLiteral("Download failed"),
                  QStringLiteral("Could not download update:\n\n%1\n\nTry again later.").arg(error),
                  this);
    offer_retry();
}

void UpdateDialog::offer_retry()
{
    progress_bar_->hide();
    status_label_->hide();
    download_button_->setEnabled(true);
    download_button_->setText(QStringLiteral("Retry download"));
    download_button_->show();
    download_button_->setFocus();
    later_button_->setVisible(!forced_);
}

void UpdateDialog::install()
{
    status_label_->setText(QStringLiteral("Download complete. Installing and restarting..."));
    download_button_->hide();
    Updater::clear_snooze(db_);
    const bool elevate = Updater::is_elevated();
    const Updater::DownloadResult result =
        is_payload_ ? Updater::install_from_payload_zip(dest_path_, app_path_, application_version,
                                                        version(), elevate, setup_.tools)
                    : Updater::install_and_restart(dest_path_, app_path_, elevate, setup_.tools);
    if (result.ok) {
        install_started_ = true;
        return accept();
    }
    show_late_box(
        QMessageBox::Critical, QStringLiteral("Install failed"),
        QStringLiteral("Could not install update:\n\n%1\n\nThe downloaded file is at:\n%2\n\n"
                       "You can install it manually by replacing the app files.")
            .arg(result.error, dest_path_),
        this);
    offer_retry();
}

void UpdateDialog::on_later()
{
    qCInfo(log_update).noquote() << "postponed" << version();
    Updater::snooze_24h(db_, version(), setup_.clock);
    reject();
}

void UpdateDialog::request_end()
{
    ending_ = true;
    if (stop_)
        *stop_ = true;
    if (worker_thread_)
        worker_thread_->quit();
}

bool UpdateDialog::wait_until(QDeadlineTimer deadline)
{
    return !worker_thread_ || worker_thread_->wait(deadline);
}

void UpdateDialog::delete_when_ended()
{
    if (worker_thread_ && worker_thread_->isRunning())
        connect(worker_thread_, &QThread::finished, this, &QObject::deleteLater);
    else
        deleteLater();
}

void UpdateDialog::done(int result)
{
    request_end();
    QDialog::done(result);
}

void UpdateDialog::closeEvent(QCloseEvent *event)
{
    if (forced_ && !install_started_ && !ending_)
        event->ignore();
    else
        QDialog::closeEvent(event);
}

void UpdateDialog::keyPressEvent(QKeyEvent *event)
{
    if (forced_ && event->key() == Qt::Key_Escape)
        event->accept();
    else
        QDialog::keyPressEvent(event);
}

} // namespace tally::ui
