#include "honor/honor_reconciliation.h"

#include <algorithm>
#include <limits>

namespace tally::honor {
namespace {

int saturated(std::int64_t value)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

} // namespace

Reconciliation reconcile(const HonorBase &old, const HonorReading &reading,
                         const EarnedHonor &earned)
{
    Reconciliation result;
    result.fresh = old.honor != reading.honor;
    result.base = result.fresh ? HonorBase{reading.honor, reading.time} : old;
    result.delta_reports = result.fresh ? earned.since_reading : earned.since_base;
    result.estimated = reading.honor + result.delta_reports;
    if (result.fresh && old.honor && old.since) {
        const std::int64_t expected = *old.honor + earned.since_base;
        result.comparison = {.base_timestamp = *old.since,
                             .base_honor = saturated(*old.honor),
                             .new_timestamp = reading.time,
                             .new_honor = saturated(reading.honor),
                             .delta_reports = earned.since_base,
                             .expected = saturated(expected),
                             .discrepancy = saturated(reading.honor - expected)};
    }
    return result;
}

double time_of_reading(const ReadResult &read, double now)
{
    if (read.started_at > 0)
        return read.started_at;
    return read.finished_at > 0 ? read.finished_at : now;
}

QString read_ok_text(double elapsed, bool fresh)
{
    return QStringLiteral("Read OK (%1s)%2")
        .arg(QString::number(elapsed, 'f', 1), fresh ? QStringLiteral(" FRESH!") : QString());
}

} // namespace tally::honor
