#include "queries/store_queries.h"

#include "data/store/tally_db.h"
#include "platform/log/error_stream.h"
#include "queries/asker.h"

#include <QDeadlineTimer>
#include <QLoggingCategory>
#include <QThread>

#include <algorithm>
#include <utility>

namespace tally::queries {

Q_LOGGING_CATEGORY(log_queries, "tally.queries")

StoreQueries::StoreQueries(data::TallyDb &db, std::chrono::nanoseconds patience)
    : db_(db), patience_(patience), allowance_(patience), waited_(Clock::now()),
      thread_(QThread::create([this] { run(); }))
{
    thread_->start();
}

StoreQueries::~StoreQueries()
{
    request_end();
    thread_->wait();
}

void StoreQueries::request_end()
{
    const std::lock_guard lock(mutex_);
    ending_ = true;
    changed_.notify_all();
}

bool StoreQueries::wait_until(QDeadlineTimer deadline)
{
    return thread_->wait(deadline);
}

void StoreQueries::run()
{
    std::unique_lock lock(mutex_);
    while (!ending_) {
        running_ = next();
        if (!running_) {
            changed_.wait(lock);
            continue;
        }
        Question question = *std::exchange(running_->question_, {});
        was_told_ = false;
        lock.unlock();
        Placing outcome = answer(question);
        lock.lock();
        if (Asker *asker = std::exchange(running_, nullptr))
            finish(*asker, std::move(question), std::move(outcome));
    }
}

Asker *StoreQueries::next() const
{
    Asker *first = nullptr;
    const auto place = [](const Asker &asker) {
        return std::pair(asker.sight_, asker.question_->number);
    };
    for (Asker *asker : askers_) {
        if (asker->question_ && asker->sight_ != Sight::Hidden &&
            (!first || place(*asker) < place(*first)))
            first = asker;
    }
    return first;
}

StoreQueries::Placing StoreQueries::answer(const Question &question)
{
    complete_slices();
    try {
        return question.query(db_, [this] { return is_outdated(); });
    } catch (const std::exception &failure) {
        qCWarning(log_queries) << "a view keeps what it shows:" << failure.what();
        if (!question.fail)
            return {};
        return [fail = question.fail, text = platform::text_of(failure)] {
            fail(text);
        };
    }
}

void StoreQueries::complete_slices()
{
    try {
        db_.complete_chain_slices(&ending_);
    } catch (const std::exception &) {
        // Logged by the store, which answers without them too.
    }
}

bool StoreQueries::is_outdated()
{
    const std::lock_guard lock(mutex_);
    was_told_ |= ending_ || !running_ || running_->question_ || is_preempted();
    return was_told_;
}

bool StoreQueries::is_preempted() const
{
    return running_->sight_ != Sight::Seen && std::ranges::any_of(askers_, [](const Asker *asker) {
               return asker->question_ && asker->sight_ == Sight::Seen;
           });
}

void StoreQueries::finish(Asker &asker, Question question, Placing outcome)
{
    if (asker.question_)
        return; // the last question wins
    if (was_told_) {
        asker.question_ = std::move(question); // another was more urgent
        return;
    }
    asker.outcome_ = std::move(outcome);
    changed_.notify_all();
    QMetaObject::invokeMethod(&asker, &Asker::settle, Qt::QueuedConnection);
}

bool StoreQueries::is_pending(const Asker &asker) const
{
    if (ending_)
        return false;
    return asker.question_ ? asker.sight_ != Sight::Hidden : running_ == &asker;
}

void StoreQueries::wait_a_moment(const Asker &asker, std::unique_lock<std::mutex> &lock)
{
    const Clock::time_point begin = Clock::now();
    allowance_ = std::min(patience_, allowance_ + (begin - waited_) / 10);
    changed_.wait_until(lock, begin + allowance_, [&] { return !is_pending(asker); });
    waited_ = Clock::now();
    allowance_ -= std::min<std::chrono::nanoseconds>(allowance_, waited_ - begin);
}

} // namespace tally::queries
