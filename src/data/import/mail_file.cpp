#include "import/mail_file.h"

#include "files/exact_files.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <utility>

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

double MailFile::modified()
{
    if (!open())
        return 0.0;
    const QDateTime time = file_.fileTime(QFileDevice::FileModificationTime);
    return static_cast<double>(time.toMSecsSinceEpoch()) / 1000.0;
}

void MailFile::read_up_to(qint64 end)
{
    if (!open())
        return;
    const qint64 missing = std::min(end, size_) - content_.size();
    if (missing > 0)
        content_ += file_.read(missing);
}

bool MailFile::open()
{
    if (!std::exchange(tried_to_open_, true) && platform::open_for_reading(file_, path_) &&
        file_.size() <= max_size)
        size_ = file_.size();
    return file_.isOpen();
}

} // namespace tally::data
