#pragma once

#include "data/store/chain_records.h"

#include <QString>

#include <optional>
#include <vector>

namespace tally::ui {

/// What one round's row shows.

enum class RoundStatus { Destroyed, AttemptFail, Victory, Tactical, Escape };
enum class RowTint { Fort, FreeAp, Plain };

/// What the other rounds say about one round.
struct RoundFlags {
    bool is_free = false;      ///< its barbarian had got away from an earlier round
    bool is_tactical = false;  ///< its barbarian got away and was met again
    bool is_destroyed = false; ///< the fort fell in it
};

/// A text and the style sheet of its label, which may be empty.
struct StyledText {
    QString text;
    QString style;

    bool operator==(const StyledText &) const = default;
};

struct RoundLook {
    QString number;
    RowTint tint = RowTint::Plain;
    StyledText status;
    StyledText target;
    StyledText tag;
    QString damage_taken;
    QString damage_dealt;
    std::vector<data::LootEntry> rewards; ///< with the items' facts, in the order to show them
};

/// \param chain_number the first half of the round's number
/// \param fort the fort that the chain went for
RoundLook round_look(int chain_number, const data::ChainRound &round, RoundFlags flags,
                     const std::optional<data::FortOfChain> &fort);

RoundStatus status_of(const data::ChainRound &round, RoundFlags flags);
StyledText status_text(RoundStatus status);
StyledText target_text(const data::ChainRound &round, bool is_free,
                       const std::optional<data::FortOfChain> &fort);
StyledText tag_text(const data::ChainRound &round, RoundFlags flags,
                    const std::optional<data::FortOfChain> &fort);

/// The round's items with a value, or those of the fort that fell in it, by kind. Facts that an
/// item lacks come from the reference tables.
std::vector<data::LootEntry> rewards_of(const data::ChainRound &round, bool is_destroyed,
                                        const std::optional<data::FortOfChain> &fort);
/// How many items `rewards_of` gives.
size_t reward_count(const data::ChainRound &round, bool is_destroyed,
                    const std::optional<data::FortOfChain> &fort);

/// `format_count` of the value without its fraction; empty if there is none.
QString count_text(std::optional<double> value);
/// Name and quantity in two lines, made such that markup in the name shows as it stands; empty for
/// an item without a name.
QString reward_tool_tip(const data::LootEntry &item);
/// The row in words.
QString spoken_text(const RoundLook &look);

} // namespace tally::ui
