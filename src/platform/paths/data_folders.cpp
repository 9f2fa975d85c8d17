#include "platform/paths/data_folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace tally::platform {

QString app_root_of(const QString &executable_dir)
{
    const QFileInfo dir(executable_dir);
    const bool in_system = dir.fileName().compare(u"system", Qt::CaseInsensitive) == 0;
    return in_system ? dir.absolutePath() : executable_dir;
}

QString app_root_dir()
{
    return app_root_of(QCoreApplication::applicationDirPath());
}

QString data_dir()
{
    return QDir(app_root_dir()).filePath(QStringLiteral("data"));
}

QString db_path()
{
    return QDir(data_dir()).filePath(QStringLiteral("tally.db"));
}

QString raw_dir()
{
    return QDir(data_dir()).filePath(QStringLiteral("raw"));
}

QString icon_cache_dir()
{
    return QDir(data_dir()).filePath(QStringLiteral("icon_cache"));
}

void ensure_data_dirs()
{
    for (const QString &dir : {data_dir(), raw_dir(), icon_cache_dir()})
        QDir().mkpath(dir);
}

QStringList mailcache_candidates()
{
    return {
        QStringLiteral("C:/Program Files (x86)/ROK/save/mailcache"),
        QStringLiteral(
            "C:/Program Files (x86)/Rise of Kingdoms/Rise of Kingdoms Game/save/mailcache"),
    };
}

QString first_existing_dir(const QStringList &candidates)
{
    const auto found = std::find_if(candidates.begin(), candidates.end(),
                                    [](const QString &dir) { return QFileInfo(dir).isDir(); });
    return found != candidates.end() ? *found : candidates.value(0);
}

QString default_mailcache_dir()
{
    return first_existing_dir(mailcache_candidates());
}

} // namespace tally::platform
