#pragma once

#include <QLatin1StringView>

namespace tally::ui {

/// One card of a summary.
struct CardTitle {
    QLatin1StringView key;
    const char16_t *title;
};

} // namespace tally::ui
