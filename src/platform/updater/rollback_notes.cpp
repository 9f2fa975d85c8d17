#include "platform/updater/rollback_notes.h"

#include "platform/files/whole_file.h"
#include "platform/updater/update_log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tally::platform::Updater {
namespace {

QString note_beside(const QString &marker)
{
    return QFileInfo(marker).dir().filePath(QStringLiteral("rollback-seen.txt"));
}

QByteArray version_in(const QString &path)
{
    constexpr qint64 longest = 256;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(longest).trimmed() : QByteArray();
}

} // namespace

bool note_start(const QString &marker)
{
    if (!QFile::exists(marker))
        return false;
    const QString note = note_beside(marker);
    const QByteArray version = version_in(marker);
    // One of an earlier update says nothing of this one.
    if (QFile::exists(note) && version_in(note) == version)
        return true;
    if (const auto trouble = write_whole_file(note, version + '\n'))
        qCWarning(log_update).noquote() << "cannot write" << note << *trouble;
    return false;
}

void remove_marker(const QString &marker)
{
    QFile::remove(marker);
    QFile::remove(note_beside(marker));
}

} // namespace tally::platform::Updater
