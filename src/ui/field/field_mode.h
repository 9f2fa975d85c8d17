#pragma once

#include "settings/catalogue.h"

#include <QLatin1StringView>

#include <array>

namespace tally::ui {

/// Which attacks a page shows, with the numbers that the store has for them.
enum class FieldMode { Fields, Rallies, Garrisons, Favorites };

struct FieldModeLook {
    QLatin1StringView name;        ///< for those who cannot see the page
    QLatin1StringView export_name; ///< of a file of its attacks, without ending
    Setting<QString> columns;      ///< where the page keeps its columns
};

inline constexpr std::array field_mode_looks = {
    FieldModeLook{QLatin1StringView("Field fights"), QLatin1StringView("field-fights"),
                  settings::field_fights_columns},
    FieldModeLook{QLatin1StringView("Rallies"), QLatin1StringView("rallies"),
                  settings::field_rally_columns},
    FieldModeLook{QLatin1StringView("Garrison actions"), QLatin1StringView("garrison-actions"),
                  settings::field_garrison_columns},
    FieldModeLook{QLatin1StringView("Favorites"), QLatin1StringView("favorite-attacks"),
                  settings::field_favorites_columns},
};

constexpr const FieldModeLook &look_of(FieldMode mode)
{
    return field_mode_looks.at(static_cast<std::size_t>(mode));
}

} // namespace tally::ui
