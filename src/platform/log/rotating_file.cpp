#include "platform/log/rotating_file.h"

#include <QDir>
#include <QFileInfo>

namespace tally::platform {

RotatingFile::RotatingFile(RotatingFileOptions options) : options_(std::move(options))
{
    open();
}

bool RotatingFile::append(const QByteArray &line)
{
    if (file_.isOpen() && file_.size() + line.size() > options_.rotate_at) {
        file_.close();
        make_room();
    }
    return (file_.isOpen() || open()) && file_.write(line) == line.size();
}

bool RotatingFile::open()
{
    QDir().mkpath(QFileInfo(options_.path).path());
    if (QFileInfo(options_.path).size() >= options_.rotate_at)
        make_room();
    file_.setFileName(options_.path);
    return file_.open(QIODevice::Append | QIODevice::Unbuffered) &&
           file_.write(options_.first_line.toUtf8() + '\n') > 0;
}

void RotatingFile::make_room()
{
    QFile::remove(name_of(options_.kept - 1));
    for (int age = options_.kept - 2; age >= 0; --age)
        QFile::rename(name_of(age), name_of(age + 1));
    // Somebody may hold the file so that it keeps its name. It must not grow all the same.
    QFile::resize(options_.path, 0);
}

QString RotatingFile::name_of(int age) const
{
    if (age == 0)
        return options_.path;
    const QFileInfo file(options_.path);
    return QStringLiteral("%1/%2.%3.%4")
        .arg(file.path(), file.completeBaseName(), QString::number(age), file.suffix());
}

} // namespace tally::platform
