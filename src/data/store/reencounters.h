#pragma once

#include "data/store/round_slicer.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

namespace tally::data {

/// A round against a barbarian that was known by its id.
struct Encounter {
    double npc_ctid;
    std::size_t slice; ///< its place among the slices
    RoundOutcome outcome;
};

/// The chain of a slice, and its time.
struct MetIn {
    QString file_name;
    std::optional<double> time;
};

/// What the encounters of each barbarian tell of each other.
struct Reencounters {
    int free_ap = 0;  ///< rounds with loot after an earlier chain met it without
    int tactical = 0; ///< rounds without loot before a later chain met it again
    std::set<QString> files_with_free_ap;
};

Reencounters reencounters(std::vector<Encounter> encounters, const std::vector<MetIn> &slices);

} // namespace tally::data
