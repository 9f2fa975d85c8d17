#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace tally::ui {

/// Where things of known heights lie that stand one under the other. In pixels from the upper edge.
class StackGeometry {
public:
    StackGeometry(int top_margin, int spacing, int bottom_margin)
        : top_margin_(top_margin), spacing_(spacing), bottom_margin_(bottom_margin)
    {}

    void add(int height);

    size_t count() const { return bottoms_.size(); }
    int top(size_t index) const;
    int height(size_t index) const { return bottoms_[index] - top(index); }
    /// With both margins.
    int total_height() const;
    /// First and one past the last of the things that reach into the strip from `top` to before
    /// `bottom`; equal if there is none.
    std::pair<size_t, size_t> between(int top, int bottom) const;

private:
    int top_margin_;
    int spacing_;
    int bottom_margin_;
    std::vector<int> bottoms_;
};

} // namespace tally::ui
