#include "ui/honor/discrepancy_chart.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace tally::honor {
namespace {

// Readable on the windows of both themes.
const QColor line_colour(0x5865f2);
const QColor zero_colour(0x8a8f9e);

constexpr int chart_height = 96;
constexpr double margin = 6.0;
constexpr double dot = 2.5;

struct Range {
    double low;
    double high;

    double size() const { return std::max(high - low, 1.0); }
};

/// With 0, so that the line shows which way it is off.
Range range_of(const std::vector<DiscrepancyPoint> &points)
{
    const auto [least, most] = std::ranges::minmax(points, {}, &DiscrepancyPoint::discrepancy);
    return {std::min<double>(least.discrepancy, 0), std::max<double>(most.discrepancy, 0)};
}

} // namespace

double zero_height(const std::vector<DiscrepancyPoint> &points, const QRectF &area)
{
    const Range range = points.empty() ? Range{0, 0} : range_of(points);
    if (range.high == range.low)
        return area.height() / 2;
    return area.height() * range.high / range.size();
}

std::vector<QPointF> chart_places(const std::vector<DiscrepancyPoint> &points, const QRectF &area)
{
    std::vector<QPointF> places;
    if (points.empty())
        return places;
    const double per_honor = area.height() / range_of(points).size();
    const double zero = area.top() + zero_height(points, area);
    const double first = points.front().time;
    const double span = points.back().time - first;
    for (const auto &[time, discrepancy] : points) {
        const double across = span > 0 ? (time - first) / span : 0.5;
        places.emplace_back(area.left() + std::clamp(across, 0.0, 1.0) * area.width(),
                            zero - discrepancy * per_honor);
    }
    return places;
}

DiscrepancyChart::DiscrepancyChart(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Discrepancy over time"));
    set_points({});
}

void DiscrepancyChart::set_points(std::vector<DiscrepancyPoint> points)
{
    points_ = std::move(points);
    setAccessibleDescription(discrepancy_summary(points_));
    update();
}

QSize DiscrepancyChart::sizeHint() const
{
    return {360, chart_height};
}

void DiscrepancyChart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF inside = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    const double text_height = painter.fontMetrics().height();
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(inside, Qt::AlignTop | Qt::AlignLeft, accessibleDescription());
    if (points_.empty())
        return;
    const QRectF area = inside.adjusted(dot, text_height + margin, -dot, -dot);
    const double zero = area.top() + zero_height(points_, area);
    painter.setPen(QPen(zero_colour, 1, Qt::DashLine));
    painter.drawLine(QPointF(inside.left(), zero), QPointF(inside.right(), zero));
    const std::vector<QPointF> places = chart_places(points_, area);
    painter.setPen(QPen(line_colour, 1.5));
    painter.drawPolyline(places.data(), static_cast<int>(places.size()));
    painter.setPen(Qt::NoPen);
    painter.setBrush(line_colour);
    for (const QPointF &place : places)
        painter.drawEllipse(place, dot, dot);
}

} // namespace tally::honor
