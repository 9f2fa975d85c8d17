#include "data/store/store_file.h"

#include <QFileInfo>
#include <QSqlError>
#include <QUrl>

#include <filesystem>

namespace tally::data {
namespace {

/// Names a file that has to exist.
QString existing_file(const QString &path)
{
    const QString full = QFileInfo(path).absoluteFilePath();
    return QStringLiteral("file://%1%2?mode=rw")
        .arg(full.startsWith(u'/') ? QString() : QStringLiteral("/"),
             QString::fromLatin1(QUrl::toPercentEncoding(full, "/:")));
}

/// Whether there is surely no such file: one that this user may not see is not missing.
bool is_missing(const QString &path)
{
    std::error_code failure;
    return std::filesystem::status(QFileInfo(path).filesystemFilePath(), failure).type() ==
           std::filesystem::file_type::not_found;
}

} // namespace

std::optional<QString> StoreFile::open(QSqlDatabase &db)
{
    const auto before = opened();
    db.setConnectOptions(before ? QStringLiteral("QSQLITE_OPEN_URI") : QString());
    db.setDatabaseName(before ? existing_file(path_) : path_);
    if (!db.open())
        return db.lastError().text();
    {
        const std::scoped_lock lock(mutex_);
        if (!opened_)
            opened_ = present();
    }
    if (is_in_place())
        return std::nullopt;
    db.close();
    return QStringLiteral("the file was replaced while the program ran");
}

bool StoreFile::is_in_place() const
{
    const auto id = opened();
    const auto now = present();
    return !id || (now ? now == id : !is_missing(path_));
}

std::optional<platform::FileId> StoreFile::opened() const
{
    const std::scoped_lock lock(mutex_);
    return opened_;
}

std::optional<platform::FileId> StoreFile::present() const
{
    return platform::file_id(platform::exact_path(path_));
}

} // namespace tally::data
