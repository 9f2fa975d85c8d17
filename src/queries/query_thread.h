#pragma once

#include <QMutex>
#include <QObject>
#include <QWaitCondition>

#include <chrono>
#include <functional>
#include <memory>

class QDeadlineTimer;
class QThread;

namespace tally::ui {

/// A thread that answers the questions of one view to the store, so that a long answer does not
/// stop the window. It lives as long as the view, and with it what its connection remembers.
///
/// The last question wins: one that waits is replaced, the answer to an older one is thrown away.
/// All members are called on the view's thread.
class QueryThread : public QObject {
    Q_OBJECT

public:
    /// Places an answer in the view, on the view's thread.
    using Placing = std::function<void()>;
    /// Runs on the query thread; may end early, with anything, once it is outdated.
    using Query = std::function<Placing(const std::function<bool()> &is_outdated)>;

    /// \param patience how long `ask` waits for an answer
    QueryThread(std::chrono::milliseconds patience, QObject *parent);
    /// Waits for the query that runs.
    ~QueryThread() override;

    /// Places the answer at once if it comes soon, else whenever it comes. Where one has not come
    /// soon, the next will hardly do so either: from then on the patience is a quarter of itself.
    void ask(Query query);
    bool busy() const { return busy_; }

    /// Takes no more questions. \return whether the query that runs has ended in time.
    bool end(QDeadlineTimer deadline);

Q_SIGNALS:
    void busyChanged(bool busy); ///< not for answers that come soon

private:
    void run();
    Placing answer(int number, const Query &query);
    bool is_outdated(int number);
    /// Places the answer to the last question, if it has come.
    void place_answer();
    void set_busy(bool busy);

    const std::chrono::milliseconds patience_;
    bool busy_ = false;
    std::unique_ptr<QThread> thread_;

    QMutex mutex_; ///< for all that follows
    QWaitCondition changed_;
    int last_ = 0;     ///< number of the last question
    Query query_;      ///< of the last question, until it is taken
    int answered_ = 0; ///< number of the question that was answered last
    Placing placing_;  ///< its answer, until it is placed
    bool was_slow_ = false;
    bool ending_ = false;
};

} // namespace tally::ui
