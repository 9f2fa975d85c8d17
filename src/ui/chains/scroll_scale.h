#pragma once

#include <QtGlobal>

namespace tally::ui {

/// How a scroll bar, whose values are ints, stands for a way of any length in pixels: one to one
/// as long as that fits.
class ScrollScale {
public:
    /// \param way in pixels, from the first to the last place that can be scrolled to
    explicit ScrollScale(qint64 way = 0);

    int maximum() const;
    /// The last value stands for the end of the way.
    qint64 offset_of(int value) const;
    int value_of(qint64 offset) const;
    /// A number of pixels in steps of the bar, at least one.
    int steps(int pixels) const;

private:
    qint64 way_;
    qint64 pixels_a_step_;
};

} // namespace tally::ui
