#include "data/master/master_refresh_worker.h"

#include "data/master/icon_file.h"
#include "data/master/master_cache.h"
#include "data/master/net_log.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QThread>

#include <array>
#include <set>

namespace tally::data {
namespace {

constexpr std::array kinds = {
    QLatin1StringView("heroes"),    QLatin1StringView("items"), QLatin1StringView("inscriptions"),
    QLatin1StringView("armaments"), QLatin1StringView("barbs"), QLatin1StringView("icons_index"),
};
constexpr std::array icon_sections = {
    QLatin1StringView("loot"),
    QLatin1StringView("all_loot"),
    QLatin1StringView("commanders"),
};

bool is_told_to_stop()
{
    return QThread::currentThread()->isInterruptionRequested();
}

std::set<QString> hashes_of(const QJsonObject &index)
{
    std::set<QString> hashes;
    for (const QLatin1StringView name : icon_sections) {
        const QJsonObject section = index.value(name).toObject();
        for (const QJsonValue entry : section)
            hashes.insert(entry.toObject().value(QLatin1StringView("hash")).toString());
    }
    hashes.erase(QString());
    return hashes;
}

QStringList missing_icons(const QJsonObject &index, const QDir &dir)
{
    QStringList names;
    QStringList bad;
    for (const QString &hash : hashes_of(index)) {
        const std::optional<QString> name = icon_file_name(hash);
        if (!name)
            bad.append(hash);
        else if (!dir.exists(*name))
            names.append(*name);
    }
    if (!bad.isEmpty())
        qCWarning(log_net) << "master refresh:" << bad.size()
                           << "icon hashes are no file names, the first is" << bad[0].left(80);
    return names;
}

} // namespace

MasterRefreshWorker::MasterRefreshWorker(platform::Endpoint endpoint, QString icon_cache_dir,
                                         DownloadTimeouts timeouts)
    : download_(std::move(endpoint), timeouts), timeouts_(timeouts),
      icon_cache_dir_(std::move(icon_cache_dir))
{}

void MasterRefreshWorker::run()
{
    bool has_loaded = false;
    try {
        has_loaded = refresh_tables();
        if (has_loaded && !is_told_to_stop()) {
            Q_EMIT statusMessage(QStringLiteral("Downloading icons..."));
            refresh_icons();
        }
    } catch (const std::exception &error) {
        qCWarning(log_net) << "MasterRefreshWorker EXC:" << error.what();
        has_loaded = false;
    }
    Q_EMIT masterRefreshDone(has_loaded);
}

bool MasterRefreshWorker::refresh_tables()
{
    bool has_loaded = false;
    for (const QLatin1StringView name : kinds) {
        if (is_told_to_stop())
            break;
        const QString kind(name);
        Q_EMIT statusMessage(QStringLiteral("Downloading %1...").arg(kind));
        const ApiResult table = download_.fetch_master(kind);
        if (!table.ok) {
            qCWarning(log_net) << "master refresh: kind" << kind << "failed status=" << table.status
                               << table.failure;
            continue;
        }
        const QByteArray json = QJsonDocument(table.json).toJson(QJsonDocument::Compact);
        if (MasterCache::instance().load_json(kind, json))
            has_loaded = true;
    }
    return has_loaded;
}

void MasterRefreshWorker::refresh_icons()
{
    const QDir dir(icon_cache_dir_);
    dir.mkpath(QStringLiteral("."));
    const ApiResult index = download_.fetch_master(QString(kinds.back()));
    if (!index.ok)
        return;

    // The first import waits for the icons; those that are still missing come with the next start.
    const QDeadlineTimer deadline(timeouts_.all_icons_ms);
    int downloaded = 0;
    for (const QString &name : missing_icons(index.json, dir)) {
        if (is_told_to_stop() || deadline.hasExpired())
            break;
        if (download_.fetch_icon(QFileInfo(name).baseName(), dir.filePath(name)))
            ++downloaded;
    }
    if (downloaded > 0)
        qCInfo(log_net) << "master refresh: downloaded" << downloaded << "icons";
}

} // namespace tally::data
