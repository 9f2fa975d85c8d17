#pragma once

#include "data/store/chain_records.h"
#include "data/store/trial_records.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace tally::data {
class TallyDb;
}

namespace tally::ui {

struct TrialQuestion {
    QStringList bosses; ///< none means all
    double from = 0.0;  ///< seconds since the Unix epoch, as `to`; both included
    double to = 0.0;
    int gap_minutes = 60;
    QString player;            ///< whose loot is summed up; empty for everybody's
    QStringList session_files; ///< the kills of the session that is selected now
};

/// The players of one session.
struct SessionFigures {
    data::TrialSession session;
    std::vector<data::SessionPlayer> players;
};

/// What the store tells about boss runs. A part whose query failed is absent.
struct TrialFigures {
    std::optional<std::vector<data::TrialPlayerRow>> players;
    std::optional<std::vector<data::TrialSession>> sessions; ///< the oldest first
    std::optional<std::vector<data::LootStat>> loot;         ///< in the order of the cards
    /// The session that was selected, if it is still there, else the first one.
    std::optional<SessionFigures> selected;
};

/// Asks one query after the other; never throws.
/// \param is_outdated asked between the queries: what it ends early is of no use
TrialFigures trial_figures(const data::TallyDb &db, const TrialQuestion &question,
                           const std::function<bool()> &is_outdated);

/// The first session to which one of these kills belongs; null if there is none.
const data::TrialSession *session_with(const std::vector<data::TrialSession> &sessions,
                                       const QStringList &file_names);

} // namespace tally::ui
