#pragma once

#include "sample_random.h"

#include <vector>

namespace tally::sample {

struct WorldOptions {
    quint64 seed = 1;
    int days = 30;
    int players = 3;
    int count = 2000;
    double end =
        1750000000.0; ///< seconds since the Unix epoch; fixed, so that output can be repeated
};

enum class MailKind : quint8 { Chain, FortChain, Field, Trial, Keep, Fort, Other };

/// One mail to be written. Small, since all of a world's are kept at once.
struct PlannedMail {
    double time = 0.0;      ///< seconds since the Unix epoch; a chain's start
    quint64 seed = 0;       ///< of the mail's own content
    quint64 group_seed = 0; ///< boss kills: the same for all of a session
    int player = 0;
    MailKind kind = MailKind::Other;
};

/// Exactly `options.count` mails within the days before `options.end`, oldest first.
///
/// Time is cut into slots of 1000 s, and a player starts at most one chain a slot, within its first
/// 300 s. So the starts of a player's chains are at least 700 s apart, and the 600 s around a fort
/// mail hold at most one chain start: a fort that belongs to a chain follows it within 300 s in a
/// slot where nobody else starts one, any other fort lies more than 300 s away from all starts.
/// Which chain a fort is linked to therefore depends neither on the order in which the mails are
/// imported nor on the number of runs.
std::vector<PlannedMail> plan_world(const WorldOptions &options);

} // namespace tally::sample
