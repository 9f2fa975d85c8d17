#pragma once

#include "figure.h"
#include "page_refresh.h"

#include <cstdio>
#include <string>
#include <vector>

namespace tally::bench {

inline constexpr int page_repeats = 7;

struct RefreshTimes {
    std::vector<double> stops; ///< after a mail
    std::vector<double> shown;
    std::vector<double> again; ///< stops without one
};

/// \param page in front, whose figures are waited for
/// \param ask refreshes it, among others
template <typename Page, typename AddMail, typename Ask>
RefreshTimes time_refreshes(const char *name, const Page &page, AddMail add_mail, Ask ask)
{
    RefreshTimes times;
    for (int i = 0; i < page_repeats; ++i) {
        add_mail();
        const Refresh first = refresh(page, ask);
        const Refresh second = refresh(page, ask);
        times.stops.push_back(first.stop);
        times.shown.push_back(first.until);
        times.again.push_back(second.stop);
        std::printf("%s: stop %.1f ms, figures after %.1f ms, again stop %.1f ms\n", name,
                    first.stop, first.until, second.stop);
    }
    return times;
}

inline void print_refresh_figures(const std::string &name, const RefreshTimes &times,
                                  double shown_goal)
{
    print_figure(name + "_refresh_stop_ms", median(times.stops), Goal::at_most, 40);
    print_figure(name + "_refresh_shown_ms", median(times.shown), Goal::at_most, shown_goal);
    print_figure(name + "_refresh_again_stop_ms", median(times.again), Goal::at_most, 5);
}

} // namespace tally::bench
