#pragma once

#include "queries/store_queries.h"

#include <QObject>

#include <type_traits>

namespace tally::queries {

/// Who asks the `StoreQueries`: one for each view, or for each part of it that asks for itself. Of
/// its questions the last wins: one that waits is replaced, the answer to an older one is dropped.
///
/// All members are called on the thread that the asker lives on, and all answers are placed there.
/// A view holds it as its last member, so that no answer reaches what is already destroyed; an
/// asker that goes leaves its query to itself and waits for nothing.
class Asker : public QObject {
    Q_OBJECT

public:
    /// \param queries outlives the asker
    explicit Asker(StoreQueries &queries, Sight sight = Sight::Background);
    ~Asker() override;

    /// Asks for what `query` finds. A view that is seen waits a moment for the answer, so that it
    /// may be placed before this returns.
    /// \param query `Answer(const data::TallyDb &, const IsOutdated &)`, run on the thread of the
    ///        service. It holds values only, since it may outlive the view, and may run twice: one
    ///        for nobody's eyes gives way to a view that is seen.
    /// \param place `void(Answer)`
    /// \param fail gets the text of the exception that came out of the query. Without it a view
    ///        keeps what it shows; the failure is logged in any case.
    template <typename Query, typename Place>
    void ask(Query query, Place place, std::function<void(const QString &)> fail = {})
    {
        using Answer = std::invoke_result_t<Query &, const data::TallyDb &, const IsOutdated &>;
        const auto run = [query = std::move(query), place = std::move(place)](
                             const data::TallyDb &db, const IsOutdated &is_outdated) mutable {
            auto answer = std::make_shared<Answer>(query(db, is_outdated));
            return StoreQueries::Placing([place, answer]() mutable { place(std::move(*answer)); });
        };
        submit({run, std::move(fail)});
    }

    Sight sight() const { return sight_; }
    /// A view that comes into sight asks what it was asked for while it was hidden.
    void set_sight(Sight sight);
    /// Whether an answer is on its way.
    bool busy() const { return busy_; }

Q_SIGNALS:
    void busyChanged(bool busy); ///< not for answers that come soon

private:
    friend class StoreQueries;

    void submit(StoreQueries::Question question);
    /// Lets the question be taken, and waits a moment for the answer if it may. Under the mutex.
    void hand_on(std::unique_lock<std::mutex> &lock);
    /// Places the answer, if it has come.
    void settle();
    void set_busy(bool busy);

    StoreQueries &queries_;
    bool busy_ = false;

    // Under the mutex of the service.
    Sight sight_;
    std::optional<StoreQueries::Question> question_; ///< until it is taken
    StoreQueries::Placing outcome_;                  ///< until it is placed
};

} // namespace tally::queries
