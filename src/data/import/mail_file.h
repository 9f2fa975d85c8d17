#pragma once

#include "platform/files/exact_files.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

namespace tally::data {

/// One mail file, opened when it is first needed, read no further than asked and never twice.
/// A file that cannot be opened counts as empty, and so does one larger than any mail can be.
class MailFile {
public:
    static constexpr qint64 head_size = 32768;                   ///< bytes
    static constexpr qint64 max_size = qint64{64} * 1024 * 1024; ///< bytes

    explicit MailFile(QString path);

    const QString &name() const { return name_; } ///< without the folder

    /// The first `head_size` bytes.
    QByteArrayView head();
    QByteArrayView all();
    bool is_longer_than_head();
    /// What was read, if the system gave all that was asked of it.
    std::optional<platform::FileStamp> stamp_if_read();
    /// When the file was last modified, in seconds since the Unix epoch, whole milliseconds.
    double modified();

private:
    platform::InputFile &file();
    void read_up_to(qint64 end);

    QString path_;
    QString name_;
    std::optional<platform::InputFile> file_;
    QByteArray content_;
    bool read_failed_ = false;
};

} // namespace tally::data
