#include "files/exact_files.h"

#include <QDir>

namespace tally::platform {

QStringList regular_file_names(const QString &dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name);
}

bool file_exists(const QString &path)
{
    return QFile::exists(path);
}

bool open_for_reading(QFile &file, const QString &path)
{
    file.setFileName(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool copy_file(const QString &from, const QString &to)
{
    return QFile::copy(from, to);
}

} // namespace tally::platform
