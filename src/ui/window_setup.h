#pragma once

#include <chrono>
#include <functional>

namespace tally::ui {

class StartUpChain;
struct UpdateSetup;

/// Ends the process at once, without destructors: the last resort of an exit that takes too long.
void exit_hard();

/// How the window goes about starting and leaving. A test changes some of it; the program takes it
/// as it is.
struct WindowSetup {
    /// Starts the refresh of the reference data by `StartUpChain::start_refresh`; empty: the
    /// download from the endpoint.
    std::function<void(StartUpChain &)> refresh;

    std::chrono::milliseconds splash_minimum{1'500}; ///< how long the splash stands at least
    std::chrono::milliseconds splash_limit{30'000};  ///< and at most
    std::chrono::milliseconds poll_interval{2'000};  ///< between two looks at the mail folder
    std::chrono::milliseconds store_interval{3'000}; ///< between two looks at the store's file
    std::chrono::milliseconds update_delay{3'000};   ///< before the first look for a new version
    std::chrono::milliseconds update_interval{3'600'000}; ///< between two looks
    std::chrono::milliseconds update_answer{10'000};      ///< how long the server may take
    /// Changes what the update dialog is made with; empty: nothing.
    std::function<void(UpdateSetup &)> adjust_update;
    std::chrono::milliseconds exit_deadline{5'000}; ///< for leaving in order
    std::function<void()> hard_exit = exit_hard;
};

} // namespace tally::ui
