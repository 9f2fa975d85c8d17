#include "app/gui/exit_deadline.h"

#include "ui/window_setup.h"

#include <thread>

namespace tally::app {

void end_process_within(std::chrono::milliseconds time)
{
    std::thread([time] {
        std::this_thread::sleep_for(time);
        ui::exit_hard();
    }).detach();
}

} // namespace tally::app
