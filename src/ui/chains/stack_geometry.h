#pragma once

#include <QtGlobal>

#include <cstddef>
#include <utility>
#include <vector>

namespace tally::ui {

/// Where things of known heights lie that stand one under the other. In pixels from the upper edge,
/// in 64 bits: years of rounds are higher than any widget can be.
class StackGeometry {
public:
    StackGeometry(int top_margin, int spacing, int bottom_margin)
        : top_margin_(top_margin), spacing_(spacing), bottom_margin_(bottom_margin)
    {}

    void add(qint64 height);
    /// Moves all that stands under it.
    void set_height(size_t index, qint64 height);

    size_t count() const { return bottoms_.size(); }
    qint64 top(size_t index) const;
    qint64 height(size_t index) const { return bottoms_[index] - top(index); }
    /// With both margins.
    qint64 total_height() const;
    /// First and one past the last of the things that reach into the strip from `top` to before
    /// `bottom`; equal if there is none.
    std::pair<size_t, size_t> between(qint64 top, qint64 bottom) const;

private:
    int top_margin_;
    int spacing_;
    int bottom_margin_;
    std::vector<qint64> bottoms_;
};

} // namespace tally::ui
