#include "platform/updater/download.h"

#include "platform/files/whole_file.h"
#include "platform/updater/sha256.h"
#include "platform/updater/update_log.h"
#include "platform/updater/version_record.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrl>

#include <algorithm>
#include <memory>

namespace tally::platform::Updater {
namespace {

DownloadResult failure(const QString &error)
{
    return {.ok = false, .error = error};
}

DownloadResult download_failure(const QString &reason)
{
    return failure(QStringLiteral("Download failed: %1").arg(reason));
}

/// A file that is written while its hash is taken, and that is removed unless it is kept.
class PartFile {
public:
    explicit PartFile(const QString &path) : file_(path) {}
    ~PartFile()
    {
        if (is_open_ && !is_kept_)
            file_.remove();
    }
    PartFile(const PartFile &) = delete;
    PartFile &operator=(const PartFile &) = delete;

    bool open()
    {
        // Without a buffer a full disk shows at the write.
        is_open_ = file_.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
        return is_open_;
    }

    /// \return whether all of it was written.
    bool add(const QByteArray &bytes)
    {
        size_ += bytes.size();
        hash_.add(bytes);
        return file_.write(bytes) == bytes.size();
    }

    qint64 size() const { return size_; }
    QString error() const { return write_trouble(file_); }
    QString sha256() const { return hash_.hex(); }

    bool move_to(const QString &path)
    {
        file_.close();
        QFile::remove(path);
        is_kept_ = file_.rename(path);
        return is_kept_;
    }

private:
    QFile file_;
    Sha256 hash_;
    qint64 size_ = 0;
    bool is_open_ = false;
    bool is_kept_ = false;
};

/// Takes what comes until it ends or cannot be taken.
/// \return why it could not be taken; empty if it was.
QString receive(QNetworkReply &reply, PartFile &part, const DownloadProgress &progress,
                const DownloadOptions &options)
{
    QString trouble;
    qint64 done = 0;
    qint64 total = 0;
    const auto take = [&] {
        const QByteArray bytes = reply.readAll();
        if (bytes.isEmpty() || !trouble.isEmpty())
            return;
        if (part.size() + bytes.size() > options.size_limit)
            trouble = QStringLiteral("the file is larger than it may be");
        else if (!part.add(bytes))
            trouble = QStringLiteral("it cannot be written: %1").arg(part.error());
        if (!trouble.isEmpty())
            reply.abort();
        else if (progress)
            progress(done, total);
    };
    QObject::connect(&reply, &QNetworkReply::downloadProgress, &reply, [&](qint64 now, qint64 all) {
        done = now;
        total = all;
    });
    QObject::connect(&reply, &QNetworkReply::readyRead, &reply, take);
    wait_for(reply, options.time_limit, options.stop);
    if (reply.isOpen())
        take();
    if (is_complete(reply) && progress)
        progress(done, total);
    return trouble;
}

/// What is wrong with the answer as a whole; empty if nothing is.
QString fault_of(const QNetworkReply &reply, const PartFile &part)
{
    if (reply.error() != QNetworkReply::NoError)
        return reply.errorString();
    if (!is_complete(reply))
        return QStringLiteral("the server does not have the file");
    return part.size() == 0 ? QStringLiteral("the file is empty") : QString();
}

DownloadResult keep(PartFile &part, const QString &dest_path, const QString &expected_sha256)
{
    constexpr int shown = 16;
    const QString sha256 = part.sha256();
    const QString expected = expected_sha256.toLower();
    if (!expected.isEmpty() && sha256 != expected)
        return failure(QStringLiteral("SHA256 mismatch: expected %1..., got %2...")
                           .arg(expected_sha256.left(shown), sha256.left(shown)));
    if (!part.move_to(dest_path))
        return failure(QStringLiteral("Cannot rename temp to dest"));
    return {.ok = true, .error = {}, .sha256 = sha256};
}

DownloadResult download(const QUrl &url, const QString &dest_path, const QString &expected_sha256,
                        const DownloadProgress &progress, const DownloadOptions &options)
{
    constexpr qint64 read_ahead = 4 << 20; // a slow disk holds the server up, not the memory
    QDir().mkpath(QFileInfo(dest_path).path());
    PartFile part(dest_path + QStringLiteral(".tmp"));
    if (!part.open())
        return failure(QStringLiteral("Cannot open temp file"));
    QNetworkAccessManager network;
    const std::unique_ptr<QNetworkReply> reply(network.get(update_request(url, options.endpoint)));
    reply->setReadBufferSize(read_ahead);
    if (const QString trouble = receive(*reply, part, progress, options); !trouble.isEmpty())
        return download_failure(trouble);
    if (const QString fault = fault_of(*reply, part); !fault.isEmpty())
        return download_failure(fault);
    return keep(part, dest_path, expected_sha256);
}

} // namespace

qint64 size_limit_for(qint64 announced)
{
    if (announced < 1 || announced > largest_download)
        return largest_download;
    return std::min(announced + announced / 10, largest_download);
}

DownloadResult download_file(const QString &url, const QString &dest_path,
                             const QString &expected_sha256, const DownloadProgress &progress,
                             const DownloadOptions &options)
{
    if (!is_https(url))
        return download_failure(QStringLiteral("the address is none of https"));
    qCInfo(log_update).noquote() << "download of" << url << "to" << dest_path;
    const DownloadResult result =
        download(QUrl(url, QUrl::StrictMode), dest_path, expected_sha256, progress, options);
    if (result.ok)
        qCInfo(log_update).noquote() << "downloaded, sha256" << result.sha256;
    else
        qCWarning(log_update).noquote() << result.error;
    return result;
}

DownloadResult check_file(const QString &path, const QString &sha256, const StopFlag *stop)
{
    constexpr qint64 piece = 1 << 20;
    QFile file(path);
    Sha256 hash;
    if (!file.open(QIODevice::ReadOnly))
        return failure(QStringLiteral("The downloaded file is gone: %1").arg(file.errorString()));
    while (!file.atEnd() && !is_set(stop)) {
        const QByteArray bytes = file.read(piece);
        if (bytes.isEmpty())
            break;
        hash.add(bytes);
    }
    if (hash.hex() != sha256.toLower())
        return failure(QStringLiteral("The downloaded file has changed since it came"));
    qCInfo(log_update).noquote() << "checked once more:" << path;
    return {.ok = true, .error = {}, .sha256 = sha256};
}

} // namespace tally::platform::Updater
