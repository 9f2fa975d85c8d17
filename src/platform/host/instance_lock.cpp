#include "platform/host/instance_lock.h"

#include <cstdio>

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
            std::fprintf(stderr, "[main] %s failed (err=%lu) — allowing launch\n",
                         attempt.mechanism, attempt.error);
            return InstanceClaim::Unguarded;
        case LockOutcome::HeldElsewhere:
            host.pause(between_tries);
            break;
        }
    }
    std::fputs("[main] another live instance holds the singleton mutex — exiting\n", stderr);
    return InstanceClaim::Refused;
}

} // namespace tally::platform
