#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <filesystem>
#include <stdexcept>

namespace tally::test {

/// A mail folder that lives as long as the object.
class TempMails {
public:
    QString path() const { return dir_.path(); }
    QString file(const QString &name) const { return dir_.filePath(name); }

    /// Writes a file, modified at `mtime` seconds since the Unix epoch, which appears when it is
    /// whole. \return its path.
    QString add(const QString &name, const QByteArray &content, double mtime = 1.7e9) const
    {
        QFile out(file(u'.' + name));
        const bool written =
            out.open(QIODevice::WriteOnly) && out.write(content) == content.size() && out.flush() &&
            out.setFileTime(QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(mtime * 1000)),
                            QFileDevice::FileModificationTime);
        if (!written)
            throw std::runtime_error("cannot write a test mail");
        std::filesystem::rename(out.fileName().toStdString(), file(name).toStdString());
        return file(name);
    }

private:
    QTemporaryDir dir_;
};

} // namespace tally::test
