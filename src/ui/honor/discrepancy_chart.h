#pragma once

#include "ui/honor/history_texts.h"

#include <QRectF>
#include <QWidget>

#include <vector>

namespace tally::honor {

/// The points' places in `area`: the time runs to the right, and 0 lies where `zero_height` says.
/// One point alone stands in the middle.
std::vector<QPointF> chart_places(const std::vector<DiscrepancyPoint> &points, const QRectF &area);
/// How far below the top of `area` a discrepancy of 0 lies: it is always within.
double zero_height(const std::vector<DiscrepancyPoint> &points, const QRectF &area);

/// How far off the estimate was, as a line over time, with its summary in words.
class DiscrepancyChart : public QWidget {
    Q_OBJECT

public:
    explicit DiscrepancyChart(QWidget *parent = nullptr);

    /// \param points the oldest first
    void set_points(std::vector<DiscrepancyPoint> points);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::vector<DiscrepancyPoint> points_;
};

} // namespace tally::honor
