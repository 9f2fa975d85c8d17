#pragma once

#include "platform/clock/clock.h"
#include "platform/endpoint/endpoint.h"
#include "platform/paths/data_folders.h"
#include "platform/updater/install.h"

#include <QDeadlineTimer>
#include <QDialog>
#include <QJsonObject>
#include <QPointer>

#include <memory>

class QLabel;
class QProgressBar;
class QPushButton;
class QThread;

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

/// What the dialog would otherwise reach for.
struct UpdateSetup {
    platform::Endpoint endpoint = platform::shipped_endpoint();
    platform::Clock clock = platform::system_time;
    QString updates_dir = platform::data_dir() + QStringLiteral("/updates");
    platform::Updater::InstallTools tools = platform::Updater::system_tools();
};

/// Offers a new version, downloads it and starts what installs it. Whoever shows it asks afterwards
/// whether an install has begun; if so, the program must end.
class UpdateDialog : public QDialog {
    Q_OBJECT

public:
    /// \param record one that counts
    /// \param db for the postponement; outlives the dialog
    /// \param app_path of the running executable
    /// \param forced whether the offer cannot be postponed or dismissed
    UpdateDialog(QJsonObject record, data::TallyDb *db, QString app_path, bool forced,
                 QWidget *parent, UpdateSetup setup = {});
    ~UpdateDialog() override;

    bool install_started() const { return install_started_; }

    /// Asks a download to end, and lets a forced dialog be closed; does not wait.
    void request_end();
    /// \return whether the download has ended in time.
    bool wait_until(QDeadlineTimer deadline);
    /// Deletes the dialog as soon as no download runs.
    void delete_when_ended();

    void done(int result) override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private Q_SLOTS:
    void on_download();
    void on_later();
    void on_progress(qlonglong done, qlonglong total);
    void on_download_finished(bool ok, const QString &error);

private:
    void build();
    void show_offer();
    void fit_to_texts();
    /// Why the update is not even downloaded; empty if it may be.
    QString refusal() const;
    void start_download();
    void show_downloading();
    void offer_retry();
    void install();
    QString version() const;

    QJsonObject record_;
    data::TallyDb *db_;
    QString app_path_;
    bool forced_;
    UpdateSetup setup_;
    bool install_started_ = false;
    bool ending_ = false;

    QLabel *title_label_ = nullptr;
    QLabel *info_label_ = nullptr;
    QProgressBar *progress_bar_ = nullptr;
    QLabel *status_label_ = nullptr;
    QPushButton *download_button_ = nullptr;
    QPushButton *later_button_ = nullptr;

    QPointer<QThread> worker_thread_;
    std::shared_ptr<platform::Updater::StopFlag> stop_; ///< of the download that runs
    bool is_payload_ = false;
    QString dest_path_;
};

} // namespace tally::ui
