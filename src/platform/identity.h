#pragma once

#include <QLatin1StringView>

namespace tally::platform {

inline constexpr QLatin1StringView organisation_name{"Fennbrook"};
inline constexpr QLatin1StringView application_name{"Ledgerline - Tallyhand"};
inline constexpr QLatin1StringView application_version{"v2.0-alfa.072"};

} // namespace tally::platform
