#pragma once

#include "data/store/records.h"

#include <optional>
#include <vector>

namespace tally::data {

class StoreConnection;

/// One reconciliation of the honor tracker.
struct HonorLogEntry {
    double log_time;
    std::optional<double> base_timestamp;
    std::optional<int> base_honor;
    std::optional<double> new_timestamp;
    std::optional<int> new_honor;
    std::optional<int> delta_reports;
    std::optional<int> estimated;
    std::optional<int> discrepancy;
};

void log_honor_summary(const StoreConnection &store, const HonorLogEntry &entry);
std::vector<HonorLogRow> recent_honor_log(const StoreConnection &store, int limit);

} // namespace tally::data
