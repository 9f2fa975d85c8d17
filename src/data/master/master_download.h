#pragma once

#include "data/master/https_client.h"

#include <QJsonObject>
#include <QString>

namespace tally::data {

/// How long the server may take.
struct DownloadTimeouts {
    int table_ms = 10000;
    int icon_ms = 30000;
    int all_icons_ms = 90000; ///< after so long no further icon is asked for
};

struct ApiResult {
    bool ok = false;  ///< exactly if `status` is 200
    QJsonObject json; ///< {"error": "invalid_json", "http_status": status} if the body is no object
    int status = 0;
    QString failure; ///< why no answer came, for the log
};

/// The requests that the server answers. Each blocks its thread, as `HttpsClient` does.
class MasterDownload {
public:
    MasterDownload(platform::Endpoint endpoint, DownloadTimeouts timeouts);

    /// A table of at most 16 MiB.
    ApiResult fetch_master(const QString &kind) const;

    /// Writes an icon of at most 2 MiB, whole or not at all. `hash` must have passed
    /// `icon_file_name`. \return whether the file was written.
    bool fetch_icon(const QString &hash, const QString &file_path) const;

private:
    HttpsClient client_;
    DownloadTimeouts timeouts_;
};

} // namespace tally::data
