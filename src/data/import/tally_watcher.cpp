#include "data/import/tally_watcher.h"

#include "data/import/import_pipeline.h"
#include "data/import/mail_folder.h"
#include "platform/files/exact_files.h"
#include "platform/log/error_stream.h"

#include <QDir>

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace tally::data {

TallyWatcher::TallyWatcher(TallyDb *db, const QString &dir, QString raw_dir, int poll_ms,
                           QObject *parent)
    : QThread(parent), db_(db), dir_(platform::exact_path(dir)), raw_dir_(std::move(raw_dir)),
      poll_ms_(poll_ms)
{}

TallyWatcher::~TallyWatcher()
{
    stop_and_wait();
}

bool TallyWatcher::stop_and_wait()
{
    constexpr int time_for_the_file_in_hand = 2000; // ms
    request_stop();
    return wait(QDeadlineTimer(std::max(poll_ms_, 0) + time_for_the_file_in_hand));
}

void TallyWatcher::run()
{
    MailFolder folder(dir_);
    QSet<QString> seen = folder.names_if_changed().value_or(QSet<QString>());
    while (stop_ == 0) {
        pause();
        if (stop_ != 0)
            break;
        auto current = folder.names_if_changed();
        if (!current)
            continue;
        QStringList fresh;
        std::copy_if(current->cbegin(), current->cend(), std::back_inserter(fresh),
                     [&seen](const QString &name) { return !seen.contains(name); });
        if (fresh.isEmpty())
            continue;
        ImportTrouble trouble;
        const int imported = import_all(fresh, trouble);
        seen = *std::move(current);
        if (imported > 0)
            Q_EMIT newFilesImported(imported);
        if (trouble.any())
            Q_EMIT mailsNotStored(text_of(trouble));
    }
}

void TallyWatcher::pause() const
{
    constexpr int slice = 50; // ms
    for (int left = poll_ms_; left > 0 && stop_ == 0; left -= slice)
        msleep(static_cast<unsigned long>(std::min(left, slice)));
}

int TallyWatcher::import_all(const QStringList &names, ImportTrouble &trouble)
{
    int imported = 0;
    for (const QString &name : names) {
        if (stop_ != 0)
            break;
        try {
            const auto mail = import_mail(QDir(dir_).filePath(name), raw_dir_, *db_);
            imported += mail.is_new ? 1 : 0;
            if (mail.failure)
                trouble.add(name, *mail.failure);
        } catch (const std::exception &failure) {
            const QString reason = platform::text_of(failure);
            trouble.add(name, reason);
            Q_EMIT errorOccurred(QStringLiteral("%1: %2").arg(name, reason));
        }
    }
    return imported;
}

} // namespace tally::data
