#include "data/master/master_download.h"

#include "data/master/net_log.h"
#include "platform/files/whole_file.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

namespace tally::data {
namespace {

constexpr qint64 table_limit = 16 << 20;
constexpr qint64 icon_limit = 2 << 20;
constexpr int status_ok = 200;

bool keep_icon(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    const auto failure = platform::write_whole_file(path, content);
    if (failure)
        qCWarning(log_net).noquote() << "cannot keep" << path << *failure;
    return !failure;
}

} // namespace

MasterDownload::MasterDownload(platform::Endpoint endpoint, DownloadTimeouts timeouts)
    : client_(std::move(endpoint)), timeouts_(timeouts)
{}

ApiResult MasterDownload::fetch_master(const QString &kind) const
{
    HttpRequest request;
    request.path = QStringLiteral("/api/master/") + kind;
    request.timeout_ms = timeouts_.table_ms;
    request.size_limit = table_limit;
    const HttpResult answer = client_.http_request(request);

    ApiResult result;
    result.status = answer.status;
    result.ok = answer.status == status_ok;
    result.failure = answer.detail.isEmpty()
                         ? answer.error
                         : QStringLiteral("%1 (%2)").arg(answer.error, answer.detail);
    const QJsonDocument document = QJsonDocument::fromJson(answer.body);
    if (document.isObject())
        result.json = document.object();
    else
        result.json = {{QStringLiteral("error"), QStringLiteral("invalid_json")},
                       {QStringLiteral("http_status"), answer.status}};
    return result;
}

bool MasterDownload::fetch_icon(const QString &hash, const QString &file_path) const
{
    HttpRequest request;
    request.path = QStringLiteral("/api/master/icon/") + hash;
    request.timeout_ms = timeouts_.icon_ms;
    request.size_limit = icon_limit;
    const HttpResult answer = client_.http_request(request);
    return answer.status == status_ok && !answer.body.isEmpty() &&
           keep_icon(file_path, answer.body);
}

} // namespace tally::data
