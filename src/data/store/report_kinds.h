#pragma once

#include <algorithm>
#include <array>

namespace tally::data {

/// The kinds of report that a mail can be; it may be several at once. The store keeps sets of them
/// as sums of these numbers.
enum class ReportKind { battle = 1, field = 2, trial = 4, fort = 8 };

struct ReportKindFacts {
    ReportKind kind;
    const char *table; ///< has a row for each report of this kind, or more, by `file_name`
};

inline constexpr auto report_kinds = std::to_array<ReportKindFacts>({
    {ReportKind::battle, "reports"},
    {ReportKind::field, "field_reports"},
    {ReportKind::trial, "trial_reports"},
    {ReportKind::fort, "fort_reports"},
});

/// Whether a table has one entry for each kind of report, in their order.
template <typename Table>
constexpr bool covers_report_kinds(const Table &table)
{
    return std::equal(
        std::begin(table), std::end(table), report_kinds.begin(), report_kinds.end(),
        [](const auto &entry, const ReportKindFacts &facts) { return entry.kind == facts.kind; });
}

/// A set of kinds of report.
class ReportKinds {
public:
    constexpr ReportKinds() = default;
    /// \param sum of the numbers of kinds
    constexpr explicit ReportKinds(int sum) : sum_(sum) {}

    constexpr bool holds(ReportKind kind) const { return (sum_ & static_cast<int>(kind)) != 0; }
    constexpr void add(ReportKind kind) { sum_ |= static_cast<int>(kind); }
    constexpr int sum() const { return sum_; }

    bool operator==(const ReportKinds &) const = default;

private:
    int sum_ = 0;
};

} // namespace tally::data
