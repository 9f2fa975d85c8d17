#pragma once

#include "ui/chains/chain_filter.h"

#include <QString>

#include <optional>

namespace tally::ui {

/// What the statistics overlay shows the figures of.
class OverlaySource {
public:
    /// Empty if there is no filter at present.
    virtual std::optional<ChainFilter> current_chain_filter() const = 0;
    /// Of the page that is shown; may be empty.
    virtual QString current_tab_title() const = 0;

protected:
    ~OverlaySource() = default;
};

} // namespace tally::ui
