#include "ui/main_window.h"

#include "data/import/import_pipeline.h"
#include "platform/files/exact_files.h"
#include "platform/log/error_stream.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/import_progress.h"
#include "ui/parts/ui_log.h"

#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QUrl>

#include <algorithm>

namespace tally::ui {
namespace {

/// The path of a local file by its exact name; empty for everything else.
QString local_path(const QUrl &url)
{
#ifdef Q_OS_WIN
    return url.toLocalFile();
#else
    if (!url.isLocalFile())
        return {};
    return platform::text_of_native_name(
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()));
#endif
}

bool is_mail(const QUrl &url)
{
    const QString path = local_path(url);
    return data::is_mail_file(path.sliced(path.lastIndexOf(u'/') + 1));
}

} // namespace

void MainWindow::on_import_mailcache()
{
    if (importing_)
        return;
    const QString folder = QFileDialog::getExistingDirectory(
        this, QStringLiteral("Select mailcache directory"),
        around_.settings.get_or(settings::mailcache_dir, QDir::homePath()),
        QFileDialog::ShowDirsOnly);
    if (folder.isEmpty() || leaving_)
        return;
    around_.settings.set(settings::mailcache_dir, folder);
    import_with_progress(folder);
    refresh_all_tabs();
}

void MainWindow::let_cancel(ImportProgress &dialog)
{
    cancel_import_ = false;
    connect(
        &dialog, &QProgressDialog::canceled, this, [this] { cancel_import_ = true; },
        Qt::DirectConnection);
}

void MainWindow::import_with_progress(const QString &folder)
{
    const QScopedValueRollback importing(importing_, true);
    ImportProgress dialog(this);
    let_cancel(dialog);
    const auto show_progress = [&dialog](qint32 scanned, qint32 total, qint32 imported) {
        dialog.show_progress(scanned, total, imported);
        QCoreApplication::processEvents();
    };
    QDir().mkpath(around_.raw_dir);
    const data::ImportStats stats =
        data::import_dir(folder, around_.raw_dir, around_.db, show_progress, &cancel_import_);
    dialog.close();
    const auto done = QStringLiteral("Import done: scanned=%1  imported=%2  errors=%3")
                          .arg(stats.scanned)
                          .arg(stats.imported)
                          .arg(stats.errors);
    show_message(data::with_trouble(done, text_of(stats.trouble)), 6'000);
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (!importing_ && std::any_of(urls.begin(), urls.end(), is_mail))
        event->acceptProposedAction();
    else
        event->ignore();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.isEmpty() || importing_)
        return;
    event->acceptProposedAction();
    // Whoever drags waits until the event has been dealt with.
    QMetaObject::invokeMethod(
        this, [this, urls] { import_drop(urls); }, Qt::QueuedConnection);
}

void MainWindow::import_drop(const QList<QUrl> &urls)
{
    constexpr qint64 frame = 16; // ms
    if (importing_ || leaving_)
        return;
    const QScopedValueRollback importing(importing_, true);
    ImportProgress dialog(this);
    let_cancel(dialog);
    QDir().mkpath(around_.raw_dir);
    QElapsedTimer since_events;
    since_events.start();
    int imported = 0;
    int skipped = 0;
    data::ImportTrouble trouble;
    for (qsizetype i = 0; i < urls.size() && !cancel_import_; ++i) {
        if (!is_mail(urls[i])) {
            ++skipped;
            continue;
        }
        const data::MailImport mail = import_dropped(urls[i]);
        imported += mail.is_new ? 1 : 0;
        if (mail.failure)
            trouble.add(urls[i].fileName(), *mail.failure);
        if (since_events.elapsed() < frame)
            continue;
        dialog.show_progress(static_cast<int>(i + 1), static_cast<int>(urls.size()), imported);
        QCoreApplication::processEvents();
        since_events.start();
    }
    dialog.close();
    if (imported > 0)
        refresh_all_tabs();
    const auto done =
        QStringLiteral("Drop import: %1 file(s) imported, %2 skipped.").arg(imported).arg(skipped);
    show_message(data::with_trouble(done, text_of(trouble, data::Remedy::DropAgain)), 5'000);
}

data::MailImport MainWindow::import_dropped(const QUrl &url)
{
    try {
        return data::import_mail(local_path(url), around_.raw_dir, around_.db);
    } catch (const std::exception &failure) {
        qCWarning(log_ui) << "drop import failed:" << url.fileName() << failure.what();
        return {false, platform::text_of(failure)};
    }
}

} // namespace tally::ui
