#include "app/console/console_mode.h"

#include "platform/log/error_stream.h"

#include <exception>

namespace tally::app {

int run_console_mode(const QString &log_file, const std::function<void(RunLog &)> &mode)
{
    RunLog log(log_file);
    try {
        mode(log);
        return passed;
    } catch (const TestFailure &failure) {
        log.line(QStringLiteral("FAIL: %1").arg(failure.text));
    } catch (const std::exception &failure) {
        log.line(QStringLiteral("EXCEPTION: %1").arg(platform::text_of(failure)));
    }
    return failed;
}

} // namespace tally::app
