#pragma once

#include <QFile>
#include <QString>

namespace tally::platform {

struct RotatingFileOptions {
    QString path;               ///< "tallyhand.log"; older ones are "tallyhand.1.log" and so on
    qint64 rotate_at = 1 << 20; ///< bytes
    int kept = 3;               ///< files at most, the present one included
    QString first_line;         ///< written at the start and on top of every further file
};

/// A file that lines are appended to and that makes room for a new one before it grows too large.
class RotatingFile {
public:
    explicit RotatingFile(RotatingFileOptions options);

    /// \return false if the line could not be written; the next one is tried again.
    bool append(const QByteArray &line);

private:
    bool open();
    void make_room();
    QString name_of(int age) const;

    RotatingFileOptions options_;
    QFile file_;
};

} // namespace tally::platform
