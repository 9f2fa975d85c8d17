#include "queries/asker.h"

#include <QLoggingCategory>

#include <utility>

namespace tally::queries {

Q_DECLARE_LOGGING_CATEGORY(log_queries)

Asker::Asker(StoreQueries &queries, Sight sight) : queries_(queries), sight_(sight)
{
    const std::lock_guard lock(queries_.mutex_);
    queries_.askers_.push_back(this);
}

Asker::~Asker()
{
    const std::lock_guard lock(queries_.mutex_);
    std::erase(queries_.askers_, this);
    if (queries_.running_ == this)
        queries_.running_ = nullptr;
}

void Asker::submit(StoreQueries::Question question)
{
    {
        std::unique_lock lock(queries_.mutex_);
        question_ = std::move(question);
        outcome_ = {};
        hand_on(lock);
    }
    settle();
}

void Asker::set_sight(Sight sight)
{
    {
        std::unique_lock lock(queries_.mutex_);
        if (sight == sight_)
            return;
        sight_ = sight;
        if (question_)
            hand_on(lock);
    }
    settle();
}

void Asker::hand_on(std::unique_lock<std::mutex> &lock)
{
    question_->number = ++queries_.last_number_;
    queries_.changed_.notify_all();
    if (sight_ == Sight::Seen)
        queries_.wait_a_moment(*this, lock);
}

void Asker::settle()
{
    StoreQueries::Placing outcome;
    bool is_pending = false;
    {
        const std::lock_guard lock(queries_.mutex_);
        outcome = std::exchange(outcome_, {});
        is_pending = queries_.is_pending(*this);
    }
    set_busy(is_pending);
    if (!outcome)
        return;
    try {
        outcome();
    } catch (const std::exception &failure) {
        qCWarning(log_queries) << "an answer could not be shown:" << failure.what();
    }
}

void Asker::set_busy(bool busy)
{
    if (busy_ == busy)
        return;
    busy_ = busy;
    Q_EMIT busyChanged(busy);
}

} // namespace tally::queries
