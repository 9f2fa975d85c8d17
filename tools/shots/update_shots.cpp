#include "update_shots.h"

#include "album.h"
#include "data/store/tally_db.h"
#include "ui/update/update_dialog.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QMessageBox>
#include <QTemporaryDir>

#include <memory>

namespace tally::tools {
namespace {

const QJsonObject record = {
    {QStringLiteral("version"), QStringLiteral("v2.0-alfa.073")},
    {QStringLiteral("released"), QStringLiteral("2026-11-25")},
    {QStringLiteral("size"), 64'512'345},
    // Nobody listens there.
    {QStringLiteral("download_url"), QStringLiteral("https://127.0.0.1:1/tallyhand.exe")},
};

class Updates {
public:
    explicit Updates(const Album &album) : album_(album)
    {
        db_.init_schema();
        setup_.updates_dir = folder_.filePath(QStringLiteral("data/updates"));
        setup_.tools.lack = [](platform::Updater::UpdateForm) {
            return QString();
        };
        setup_.tools.start = [this](const QString &) {
            take(QStringLiteral("installing"));
            return false;
        };
    }

    void open(bool forced)
    {
        dialog_ = std::make_unique<ui::UpdateDialog>(
            record, &db_, folder_.filePath(QStringLiteral("ledgerline-tallyhand")), forced, nullptr,
            setup_);
        dialog_->show();
    }
    void take(const QString &name)
    {
        // No events: the download would fail.
        album_.add(QStringLiteral("update-") + name, dialog_->grab());
    }
    /// Of the box over the dialog, which it closes.
    void take_box(const QString &name)
    {
        auto *box = dialog_->findChild<QMessageBox *>();
        album_.add(QStringLiteral("update-") + name, box->grab());
        delete box;
    }

    void start_download()
    {
        QMetaObject::invokeMethod(dialog_.get(), "on_download");
        QMetaObject::invokeMethod(dialog_.get(), "on_progress", Q_ARG(qlonglong, 27'262'976),
                                  Q_ARG(qlonglong, 64'512'345));
    }
    void end_download(const QString &error)
    {
        QMetaObject::invokeMethod(dialog_.get(), "on_download_finished",
                                  Q_ARG(bool, error.isEmpty()), Q_ARG(QString, error));
    }
    void put_download() const
    {
        QFile file(QDir(setup_.updates_dir).filePath(QStringLiteral("tallyhand-new.exe")));
        if (file.open(QIODevice::WriteOnly))
            file.write(setup_.tools.program_heads.first());
    }

private:
    const Album &album_;
    QTemporaryDir folder_;
    data::TallyDb db_{folder_.filePath(QStringLiteral("tally.db"))};
    ui::UpdateSetup setup_;
    std::unique_ptr<ui::UpdateDialog> dialog_;
};

} // namespace

void take_updates(const Album &album)
{
    Updates updates(album);
    for (const bool forced : {false, true}) {
        const QString mood = forced ? QStringLiteral("-required") : QString();
        updates.open(forced);
        updates.take(QStringLiteral("offer") + mood);
        updates.start_download();
        updates.take(QStringLiteral("downloading") + mood);
        updates.end_download(QStringLiteral(
            "SHA256 mismatch: expected 0123456789abcdef..., got fedcba9876543210..."));
        updates.take_box(QStringLiteral("failed") + mood);
        updates.take(QStringLiteral("retry") + mood);
    }
    updates.open(false);
    updates.start_download();
    updates.put_download();
    updates.end_download({});
    updates.take_box(QStringLiteral("not-installed"));
}

} // namespace tally::tools
