#include "platform/files/whole_file.h"

#include <QSaveFile>

namespace tally::platform {

std::optional<QString> write_whole_file(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    // Without the flush a commit takes no notice of bytes that find no room (seen with Qt 6.4), and
    // a full disk would put an empty file in the place of a good one.
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() &&
        file.commit())
        return std::nullopt;
    return write_trouble(file);
}

QString write_trouble(const QFileDevice &file)
{
    return file.error() == QFileDevice::NoError ? QStringLiteral("there is no room for all of it")
                                                : file.errorString();
}

} // namespace tally::platform
