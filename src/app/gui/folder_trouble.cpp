#include "app/gui/folder_trouble.h"

#include "platform/identity.h"

#include <QDir>
#include <QTemporaryFile>

namespace tally::app {

std::optional<QString> folder_trouble(const QString &data_dir)
{
    QTemporaryFile probe(QDir(data_dir).filePath(QStringLiteral("write-test-XXXXXX")));
    if (probe.open())
        return std::nullopt;
    return QStringLiteral("%1 keeps its data in\n\n%2\n\nand may not write there (%3).\n\n"
                          "Move the program's folder to a place of your own, for example into your "
                          "documents, and start it from there.")
        .arg(platform::application_name, QDir::toNativeSeparators(data_dir), probe.errorString());
}

} // namespace tally::app
