#pragma once

#include "app/console/run_log.h"

#include <QString>

#include <functional>

namespace tally::app {

inline constexpr int passed = 0;
inline constexpr int failed = 1;

/// What ends a self-test at once: a "FAIL:" line.
struct TestFailure {
    QString text;
};

/// Runs a console mode with a log file of its own.
/// \return the exit code: `failed` after a `TestFailure` or an exception, which are logged, else
/// `passed`.
int run_console_mode(const QString &log_file, const std::function<void(RunLog &)> &mode);

/// Ends a self-test with "FAIL: " and the text unless the condition holds.
inline void require(bool condition, const QString &failure)
{
    if (!condition)
        throw TestFailure{failure};
}

// The modes, each returning its exit code.
int import_only(const QString &mail_dir);
int test_parser();
int test_master();
int test_db();

} // namespace tally::app
