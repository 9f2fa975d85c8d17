#pragma once

#include <exception>
#include <functional>
#include <optional>

namespace tally::ui {

/// Runs the queries of one refresh, each for itself: one that fails leaves its part of the figures
/// absent, and the others may still answer.
class PartQueries {
public:
    /// \param is_outdated once it is true, no more queries are run
    explicit PartQueries(const std::function<bool()> &is_outdated) : is_outdated_(is_outdated) {}

    template <typename Part, typename Query>
    void ask(std::optional<Part> &part, Query query) const
    {
        if (is_outdated_())
            return;
        try {
            part = query();
        } catch (const std::exception &) {
            // The store has logged it.
        }
    }

private:
    const std::function<bool()> &is_outdated_;
};

} // namespace tally::ui
