#include "platform/updater/transfer.h"

#include "platform/net/tls.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QTimer>

namespace tally::platform::Updater {

QNetworkRequest update_request(const QUrl &url, const Endpoint &endpoint)
{
    constexpr int most_redirects = 10;
    constexpr int longest_silence = 30'000; // ms
    QNetworkRequest request(url);
    request.setSslConfiguration(tls_of(endpoint));
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Tallyhand-Updater"));
    // Qt then unpacks nothing: sizes and hashes are those of what was sent.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(most_redirects);
    // Of the body. A server that has stopped need not be waited for, and one whose headers never
    // end would otherwise fill the memory with them.
    request.setTransferTimeout(longest_silence);
    return request;
}

void wait_for(QNetworkReply &reply, std::chrono::milliseconds limit, const StopFlag *stop)
{
    constexpr std::chrono::milliseconds between_looks{50};
    QEventLoop loop;
    const auto end = [&] {
        reply.abort();
        loop.quit();
    };
    QObject::connect(&reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(limit, &loop, end);
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (is_set(stop))
            end();
    });
    if (stop)
        look.start(between_looks);
    if (!reply.isFinished() && !is_set(stop))
        loop.exec();
    // The loop also ends, unfinished, when the thread is told to quit.
    if (!reply.isFinished())
        reply.abort();
}

bool is_complete(const QNetworkReply &reply)
{
    constexpr int status_ok = 200;
    return reply.error() == QNetworkReply::NoError &&
           reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == status_ok;
}

} // namespace tally::platform::Updater
