#pragma once

namespace tally::app {

/// Runs the graphical program: the only instance of the session, with a window, until its event
/// loop ends. To be called before any application object exists.
/// \return the exit code: 0 if another instance runs, 1 if the store cannot be opened, else that of
/// the event loop.
int run_graphical(int argc, char *argv[]);

} // namespace tally::app
