#include "queries/query_thread.h"

#include <QDeadlineTimer>
#include <QLoggingCategory>
#include <QMutexLocker>
#include <QThread>

#include <utility>

namespace tally::ui {

Q_LOGGING_CATEGORY(log_queries, "tally.queries")

QueryThread::QueryThread(std::chrono::milliseconds patience, QObject *parent)
    : QObject(parent), patience_(patience), thread_(QThread::create([this] { run(); }))
{
    thread_->start();
}

QueryThread::~QueryThread()
{
    end(QDeadlineTimer(QDeadlineTimer::Forever));
}

bool QueryThread::end(QDeadlineTimer deadline)
{
    {
        const QMutexLocker lock(&mutex_);
        ending_ = true;
        changed_.wakeAll();
    }
    return thread_->wait(deadline);
}

void QueryThread::ask(Query query)
{
    {
        QMutexLocker lock(&mutex_);
        const int number = ++last_;
        query_ = std::move(query);
        changed_.wakeAll();
        const QDeadlineTimer deadline(was_slow_ ? patience_ / 4 : patience_);
        while (answered_ != number && !ending_ && changed_.wait(&mutex_, deadline)) {
        }
        was_slow_ |= answered_ != number;
    }
    place_answer();
}

void QueryThread::place_answer()
{
    Placing placing;
    bool busy = false;
    {
        const QMutexLocker lock(&mutex_);
        busy = answered_ != last_ && !ending_;
        if (answered_ == last_)
            placing = std::exchange(placing_, {});
    }
    set_busy(busy);
    if (placing)
        placing();
}

void QueryThread::set_busy(bool busy)
{
    if (busy_ == busy)
        return;
    busy_ = busy;
    Q_EMIT busyChanged(busy);
}

bool QueryThread::is_outdated(int number)
{
    const QMutexLocker lock(&mutex_);
    return ending_ || number != last_;
}

QueryThread::Placing QueryThread::answer(int number, const Query &query)
{
    try {
        return query([this, number] { return is_outdated(number); });
    } catch (const std::exception &failure) {
        qCWarning(log_queries) << "a view keeps what it shows:" << failure.what();
        return {};
    }
}

void QueryThread::run()
{
    QMutexLocker lock(&mutex_);
    while (!ending_) {
        if (!query_) {
            changed_.wait(&mutex_);
            continue;
        }
        const Query query = std::exchange(query_, {});
        const int number = last_;
        lock.unlock();
        Placing placing = answer(number, query);
        lock.relock();
        if (number != last_)
            continue;
        answered_ = number;
        placing_ = std::move(placing);
        changed_.wakeAll();
        QMetaObject::invokeMethod(this, &QueryThread::place_answer, Qt::QueuedConnection);
    }
}

} // namespace tally::ui
