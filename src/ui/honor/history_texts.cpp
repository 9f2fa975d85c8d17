#include "ui/honor/history_texts.h"

#include "ui/parts/format_count.h"
#include "ui/parts/local_time.h"

namespace tally::honor {
namespace {

QString number_text(std::optional<int> number)
{
    return number ? ui::format_count(*number) : QString();
}

/// A plus before what is above 0.
QString signed_text(qint64 number)
{
    return number > 0 ? u'+' + ui::format_count(number) : ui::format_count(number);
}

QVariant value_of(std::optional<int> number)
{
    return number ? QVariant(*number) : QVariant();
}

} // namespace

QStringList history_headers()
{
    return {QStringLiteral("Time"),      QStringLiteral("Baseline"),
            QStringLiteral("Read"),      QStringLiteral("Reports delta"),
            QStringLiteral("Estimated"), QStringLiteral("Discrepancy")};
}

QStringList history_cells(const data::HonorLogRow &row)
{
    return {row.log_time > 0
                ? ui::local_time_text(row.log_time, QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                : QString(),
            number_text(row.base_honor),
            number_text(row.new_honor),
            row.delta_reports ? u'+' + ui::format_count(*row.delta_reports) : QStringLiteral("0"),
            number_text(row.estimated),
            row.discrepancy ? signed_text(*row.discrepancy) : QString()};
}

QVariantList history_values(const data::HonorLogRow &row)
{
    return {history_cells(row).first(),    value_of(row.base_honor), value_of(row.new_honor),
            row.delta_reports.value_or(0), value_of(row.estimated),  value_of(row.discrepancy)};
}

std::vector<DiscrepancyPoint> discrepancy_points(const std::vector<data::HonorLogRow> &newest_first)
{
    std::vector<DiscrepancyPoint> points;
    for (auto row = newest_first.rbegin(); row != newest_first.rend(); ++row) {
        if (row->discrepancy)
            points.push_back({row->log_time, *row->discrepancy});
    }
    return points;
}

QString discrepancy_summary(const std::vector<DiscrepancyPoint> &points)
{
    if (points.empty())
        return QStringLiteral("No reading has been held against its estimate yet.");
    qint64 sum = 0;
    for (const DiscrepancyPoint &point : points)
        sum += point.discrepancy;
    return QStringLiteral("%1 reading%2, last %3, sum %4")
        .arg(ui::format_count(static_cast<qint64>(points.size())),
             points.size() == 1 ? QString() : QStringLiteral("s"),
             signed_text(points.back().discrepancy), signed_text(sum));
}

} // namespace tally::honor
