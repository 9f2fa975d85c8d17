#pragma once

#include "platform/endpoint/endpoint.h"

#include <QNetworkRequest>

#include <atomic>
#include <chrono>

class QNetworkReply;
class QUrl;

namespace tally::platform::Updater {

/// Set by another thread, or by this one from its event loop, to end what is under way.
using StopFlag = std::atomic<bool>;

inline bool is_set(const StopFlag *stop)
{
    return stop && *stop;
}

/// What all requests of the updater have in common: they name it, trust the endpoint's authorities,
/// and follow redirects only as long as these stay with https.
QNetworkRequest update_request(const QUrl &url, const Endpoint &endpoint);

/// Runs the calling thread's event loop until the reply has finished. It is aborted when the time
/// is over, when the flag is set, or when the thread's event loop is told to quit.
void wait_for(QNetworkReply &reply, std::chrono::milliseconds limit, const StopFlag *stop);

/// Whether the whole of a good answer has come.
bool is_complete(const QNetworkReply &reply);

} // namespace tally::platform::Updater
