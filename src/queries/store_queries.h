#pragma once

#include <QtGlobal>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class QDeadlineTimer;
class QString;
class QThread;

namespace tally::data {
class TallyDb;
}

namespace tally::queries {

class Asker;

/// Whether nobody waits for the answer any more. A long query asks from time to time; once it is
/// true, it may end with anything. To be called by the query alone.
using IsOutdated = std::function<bool()>;

/// What an asker asks for. In the order in which they are served.
enum class Sight {
    Seen,       ///< a view that the user has before him: it may wait a moment for its answer
    Background, ///< no view at all
    Hidden,     ///< a view that nobody sees: its question is kept until it is seen
};

/// The one thread that answers questions to the store. All of them share its connection, and with
/// it the results that the connection remembers: whoever asks second has the answer at once.
///
/// Before a question is answered, the store adds up the chains that have changed, in short
/// transactions. This is where a store of an older version takes its time.
class StoreQueries {
public:
    /// \param db outlives the service
    /// \param patience how long the window waits for answers, in all: it is given back what it has
    ///        waited at a tenth of the time that passes
    explicit StoreQueries(data::TallyDb &db,
                          std::chrono::nanoseconds patience = std::chrono::milliseconds(20));
    /// Waits for the query that runs. All askers are gone by then.
    ~StoreQueries();
    StoreQueries(const StoreQueries &) = delete;
    StoreQueries &operator=(const StoreQueries &) = delete;

    /// From now on nothing is answered. Does not wait.
    void request_end();
    /// \return whether the query that ran has ended in time. `request_end` must have come before.
    bool wait_until(QDeadlineTimer deadline);

private:
    friend class Asker;
    using Clock = std::chrono::steady_clock;
    /// Places an answer, on the asker's thread; may be empty.
    using Placing = std::function<void()>;

    struct Question {
        std::function<Placing(const data::TallyDb &, const IsOutdated &)> query;
        std::function<void(const QString &)> fail; ///< may be empty
        qint64 number = 0;                         ///< the lowest was asked first
    };

    void run();
    void complete_slices();
    Placing answer(const Question &question);
    bool is_outdated();

    // Under the mutex.
    Asker *next() const;
    bool is_preempted() const;
    bool is_pending(const Asker &asker) const;
    void finish(Asker &asker, Question question, Placing outcome);
    void wait_a_moment(const Asker &asker, std::unique_lock<std::mutex> &lock);

    data::TallyDb &db_;
    const std::chrono::nanoseconds patience_;
    std::atomic<bool> ending_ = false;

    // The standard's own: ThreadSanitizer cannot see what Qt's wait condition does with its mutex.
    std::mutex mutex_; ///< for all that follows, and for what askers share with the thread
    std::condition_variable changed_;
    std::vector<Asker *> askers_;
    qint64 last_number_ = 0;
    Asker *running_ = nullptr; ///< who is being answered; null as well once he is gone
    bool was_told_ = false;    ///< the query that runs knows that it may end with anything
    std::chrono::nanoseconds allowance_; ///< what is left of the patience
    Clock::time_point waited_;           ///< when the window waited last

    std::unique_ptr<QThread> thread_;
};

} // namespace tally::queries
