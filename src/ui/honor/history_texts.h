#pragma once

#include "data/store/records.h"

#include <QString>
#include <QStringList>
#include <QVariantList>

#include <vector>

namespace tally::honor {

QStringList history_headers();

/// A row's cells.
QStringList history_cells(const data::HonorLogRow &row);
/// The same bare, for a file: a cell without a number of its own is empty.
QVariantList history_values(const data::HonorLogRow &row);

/// One point of the line of discrepancies.
struct DiscrepancyPoint {
    double time = 0;
    int discrepancy = 0;

    bool operator==(const DiscrepancyPoint &) const = default;
};

/// The rows that have one, the oldest first.
std::vector<DiscrepancyPoint>
discrepancy_points(const std::vector<data::HonorLogRow> &newest_first);

/// The line in words: "12 readings, last +20, sum +132".
QString discrepancy_summary(const std::vector<DiscrepancyPoint> &points);

} // namespace tally::honor
