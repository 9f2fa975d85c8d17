#pragma once

namespace tally::platform {

/// Lets the standard streams write to the console that started the program. On Windows a program
/// with windows has no console of its own; a stream that is redirected to a file or a pipe keeps
/// that. Elsewhere it has nothing to do.
#ifdef _WIN32
void use_console_of_parent();
#else
inline void use_console_of_parent() {}
#endif

} // namespace tally::platform
