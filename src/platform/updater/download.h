#pragma once

#include "platform/endpoint/endpoint.h"
#include "platform/updater/transfer.h"

#include <QString>

#include <chrono>
#include <functional>

namespace tally::platform::Updater {

inline constexpr qint64 largest_download = 1LL << 30; ///< bytes

struct DownloadResult {
    bool ok = false;
    QString error;       ///< for the user; empty if `ok`
    QString sha256 = {}; ///< of what was downloaded, in lower case
};

struct DownloadOptions {
    Endpoint endpoint = shipped_endpoint(); ///< of which the authorities are trusted
    qint64 size_limit = largest_download;   ///< bytes
    std::chrono::milliseconds time_limit{1'800'000};
    const StopFlag *stop = nullptr;
};

/// \param total of the whole file; below 1 if the server has not said it
using DownloadProgress = std::function<void(qint64 done, qint64 total)>;

/// What may come for a file whose record says so many bytes: a tenth more, and never more than
/// `largest_download`.
qint64 size_limit_for(qint64 announced);

/// Downloads a file over https into a temporary one beside `dest_path`, whose place it takes when
/// all of it has come. Blocks the calling thread, which is to be one of its own; `progress` runs on
/// it. A failure leaves no part of a file.
/// \param expected_sha256 in hex, in any letter case; empty: any will do
DownloadResult download_file(const QString &url, const QString &dest_path,
                             const QString &expected_sha256, const DownloadProgress &progress,
                             const DownloadOptions &options = {});

/// Looks once more whether a file has the hash that it had when it came. Reads all of it.
DownloadResult check_file(const QString &path, const QString &sha256,
                          const StopFlag *stop = nullptr);

} // namespace tally::platform::Updater
