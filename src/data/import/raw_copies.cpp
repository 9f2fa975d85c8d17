#include "data/import/raw_copies.h"

#include "data/import/import_log.h"
#include "data/import/mail_file.h"
#include "platform/files/exact_files.h"
#include "platform/files/file_copy.h"

#include <QDir>
#include <QFileInfo>

namespace tally::data {

void keep_raw_copy(const QString &path, qint64 size, const QString &raw_dir)
{
    if (raw_dir.isEmpty())
        return;
    if (size > MailFile::max_size) {
        qCWarning(log_import).noquote()
            << "too large for a mail, neither read nor copied:" << path << size << "bytes";
        return;
    }
    const QString copy = QDir(platform::exact_path(raw_dir)).filePath(QFileInfo(path).fileName());
    if (const auto kept = platform::file_stamp(copy)) {
        if (kept->size < size)
            platform::complete_copy(path, copy);
        return;
    }
    if (!platform::copy_file(path, copy) && QDir().mkpath(raw_dir))
        platform::copy_file(path, copy);
}

void remove_torn_copies(const QString &raw_dir)
{
    if (!raw_dir.isEmpty())
        platform::remove_abandoned_copies(platform::exact_path(raw_dir));
}

} // namespace tally::data
