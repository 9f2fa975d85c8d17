#pragma once

#include "honor/honor_snapshot.h"

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace tally::honor {

/// A text, and the object name by which the overlay's style sheet knows how it looks.
struct StyledText {
    QString text;
    QString look;

    bool operator==(const StyledText &) const = default;
};

/// One of the three rows of people to overtake.
struct OvertakeTexts {
    QString rank;
    StyledText name;
    StyledText gap;

    bool operator==(const OvertakeTexts &) const = default;
};

/// A whole number in groups, or "---".
QString honor_text(std::optional<std::int64_t> honor);
/// What reports have earned, with its sign.
StyledText delta_text(int delta);
/// How old a reading is, and when it was; "---" without one. Times are seconds since the Unix
/// epoch.
QString read_text(std::optional<double> base_ts, double now);
QString rank_text(std::optional<int> rank);
/// The nearest first.
/// \param targets the farthest first
std::array<OvertakeTexts, 3> overtake_texts(const std::vector<OvertakeRow> &targets,
                                            const HonorSnapshot &snapshot);

} // namespace tally::honor
