#include "data/store/store_file.h"

#include <QFileInfo>
#include <QSqlError>
#include <QUrl>

#ifdef Q_OS_WIN
#include "platform/files/file_win32.h"
#endif

#include <filesystem>

namespace tally::data {
namespace {

/// A path in a form that SQLite, which hands it on as it is, can open.
QString openable(const QString &path)
{
#ifdef Q_OS_WIN
    // Windows takes 260 characters without a prefix, and SQLite adds "-journal" to the name.
    constexpr qsizetype longest = 250;
    const QString full = QFileInfo(path).absoluteFilePath();
    return full.size() > longest ? QString::fromStdWString(platform::win32_path(full)) : full;
#else
    return path;
#endif
}

/// Names a file that has to exist.
QString existing_file(const QString &path)
{
    const QString name = openable(QFileInfo(path).absoluteFilePath());
    const bool has_prefix = name.startsWith(u'\\');
    return QStringLiteral("file:%1%2?mode=rw")
        .arg(has_prefix              ? QString()
             : name.startsWith(u'/') ? QStringLiteral("//")
                                     : QStringLiteral("///"),
             QString::fromLatin1(QUrl::toPercentEncoding(name, "/:")));
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
    db.setDatabaseName(before ? existing_file(path_) : openable(path_));
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
