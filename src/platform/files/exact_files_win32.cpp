#include "files/exact_files.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tally::platform {

QStringList regular_file_names(const QString &dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name);
}

std::optional<FileStamp> file_stamp(const QString &path)
{
    const QFileInfo file(path);
    if (!file.isFile())
        return std::nullopt;
    return FileStamp{file.lastModified().toMSecsSinceEpoch() * 1'000'000, file.size()};
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

std::optional<FileStamp> InputFile::stamp() const
{
    return native_->file.isOpen() ? file_stamp(native_->file.fileName()) : std::nullopt;
}

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
