#pragma once

#include "honor/read_result.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace tally::honor {

/// The last value read, and when.
struct HonorBase {
    std::optional<std::int64_t> honor;
    std::optional<double> since;

    bool operator==(const HonorBase &) const = default;
};

struct HonorReading {
    std::int64_t honor = 0;
    double time = 0;
};

/// What reports have earned, each up to now.
struct EarnedHonor {
    int since_base = 0;    ///< not looked at while there is no base
    int since_reading = 0; ///< after the reading itself
};

/// A reading held against what was expected, as the log keeps it. Numbers out of range are those at
/// its ends.
struct HonorComparison {
    double base_timestamp = 0;
    int base_honor = 0;
    double new_timestamp = 0;
    int new_honor = 0;
    int delta_reports = 0;
    int expected = 0;
    int discrepancy = 0; ///< positive: reports are missing

    bool operator==(const HonorComparison &) const = default;
};

/// What a reading changes.
struct Reconciliation {
    bool fresh = false; ///< the game has refreshed its figure since the last reading
    HonorBase base;     ///< from now on
    int delta_reports = 0;
    std::int64_t estimated = 0;
    std::optional<HonorComparison> comparison; ///< of a fresh reading after an older one
};

Reconciliation reconcile(const HonorBase &old, const HonorReading &reading,
                         const EarnedHonor &earned);

/// When the value was read: at the start of the read, or else as near to it as is known.
double time_of_reading(const ReadResult &read, double now);
QString read_ok_text(double elapsed, bool fresh);

} // namespace tally::honor
