#include "data/import/mail_file.h"

#include <QFileInfo>

#include <algorithm>

namespace tally::data {

MailFile::MailFile(QString path) : path_(std::move(path)), name_(QFileInfo(path_).fileName()) {}

QByteArrayView MailFile::head()
{
    read_up_to(head_size);
    return QByteArrayView(content_).first(std::min<qsizetype>(head_size, content_.size()));
}

QByteArrayView MailFile::all()
{
    read_up_to(max_size);
    return content_;
}

bool MailFile::is_longer_than_head()
{
    return file().size() > head_size;
}

std::optional<platform::FileStamp> MailFile::stamp_if_read()
{
    return read_failed_ ? std::nullopt : file().stamp();
}

double MailFile::modified()
{
    return file().modified();
}

void MailFile::read_up_to(qint64 end)
{
    const qint64 size = file().size();
    const qint64 missing = std::min(end, size) - content_.size();
    if (missing <= 0 || size > max_size)
        return;
    const QByteArray bytes = file().read(missing);
    content_ += bytes;
    read_failed_ |= bytes.size() != missing;
}

platform::InputFile &MailFile::file()
{
    return file_ ? *file_ : file_.emplace(path_);
}

} // namespace tally::data
