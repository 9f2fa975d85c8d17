#include "platform/host/instance_lock.h"

#include "platform/log/error_stream.h"

namespace tally::platform {

InstanceClaim claim_single_instance(Host &host)
{
    constexpr int tries = 10;
    constexpr std::chrono::milliseconds between_tries{500};
    for (int i = 0; i < tries; ++i) {
        const LockAttempt attempt = host.try_instance_lock();
        switch (attempt.outcome) {
        case LockOutcome::Taken:
            return InstanceClaim::Only;
        case LockOutcome::Failed:
            print_line(QStringLiteral("[main] %1 failed (err=%2) — allowing launch")
                           .arg(QLatin1StringView(attempt.mechanism))
                           .arg(attempt.error));
            return InstanceClaim::Unguarded;
        case LockOutcome::HeldElsewhere:
            host.pause(between_tries);
            break;
        }
    }
    print_line(QStringLiteral("[main] another live instance holds the singleton mutex — exiting"));
    return InstanceClaim::Refused;
}

} // namespace tally::platform
