#include "files/exact_files.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace tally::platform {

QStringList regular_file_names(const QString &dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name);
}

bool file_exists(const QString &path)
{
    return QFile::exists(path);
}

struct InputFile::Native {
    QFile file;
};

InputFile::InputFile(const QString &path) : native_(std::make_unique<Native>())
{
    native_->file.setFileName(path);
    native_->file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

InputFile::~InputFile() = default;

qint64 InputFile::size() const
{
    return native_->file.isOpen() ? native_->file.size() : 0;
}

double InputFile::modified() const
{
    const QDateTime time = native_->file.fileTime(QFileDevice::FileModificationTime);
    return static_cast<double>(time.toMSecsSinceEpoch()) / 1000.0;
}

QByteArray InputFile::read(qint64 count)
{
    return native_->file.read(count);
}

bool copy_file(const QString &from, const QString &to)
{
    return QFile::copy(from, to);
}

} // namespace tally::platform
