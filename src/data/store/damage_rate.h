#pragma once

namespace tally::data {

/// Mails give the damage as a share of 1, or as a percentage already.
constexpr double as_percentage(double damage_rate)
{
    return damage_rate > 1.5 ? damage_rate : damage_rate * 100.0;
}

} // namespace tally::data
