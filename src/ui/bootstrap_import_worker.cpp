#include "ui/bootstrap_import_worker.h"

#include "data/import/import_pipeline.h"
#include "ui/parts/ui_log.h"

#include <exception>
#include <utility>

namespace tally::ui {

BootstrapImportWorker::BootstrapImportWorker(QString mailcache_dir, QString raw_dir,
                                             data::TallyDb *db, const std::atomic<bool> *cancel)
    : mailcache_dir_(std::move(mailcache_dir)), raw_dir_(std::move(raw_dir)), db_(db),
      cancel_(cancel)
{}

void BootstrapImportWorker::run()
{
    const auto report = [this](qint32 scanned, qint32 total, qint32 imported) {
        const qint64 percent = total >= 1 ? qint64{scanned} * 100 / total : 0;
        Q_EMIT progress(scanned, total, imported);
        Q_EMIT statusMessage(QStringLiteral("Import: %1/%2 (%3%) — new: %4")
                                 .arg(scanned)
                                 .arg(total)
                                 .arg(percent)
                                 .arg(imported));
    };
    try {
        const data::ImportStats stats =
            data::import_dir(mailcache_dir_, raw_dir_, *db_, report, cancel_);
        if (stats.trouble.any())
            Q_EMIT incomplete(text_of(stats.trouble));
        Q_EMIT bootstrapDone(stats.scanned, stats.imported, stats.errors);
    } catch (const std::exception &failure) {
        qCWarning(log_ui) << "BootstrapImportWorker EXC:" << failure.what();
        Q_EMIT bootstrapDone(0, 0, 1);
    }
}

} // namespace tally::ui
