#include "ui/keep/keep_figures.h"

#include "data/store/tally_db.h"

#include <algorithm>

namespace tally::ui {
namespace {

constexpr int longest_list = 1000;

/// As the chains name the account, or else its newest kill.
QString name_of(const data::TallyDb &db, double player_id, const std::vector<data::KeepKill> &kills)
{
    const auto accounts = db.players();
    const auto account = std::ranges::find(accounts, player_id, &data::PlayerRow::player_id);
    if (account != accounts.end() && !account->name.isEmpty())
        return account->name;
    const auto detail = kills.empty() ? std::nullopt : db.trial_detail(kills.front().file_name);
    if (!detail)
        return {};
    const auto me =
        std::ranges::find(detail->participants, player_id, &data::TrialParticipantRow::player_id);
    return me == detail->participants.end() ? QString() : me->player_name;
}

} // namespace

KeepFigures keep_figures(const data::TallyDb &db)
{
    KeepFigures figures;
    figures.player_id = db.keep_player();
    if (!figures.player_id)
        return figures;
    figures.kills = db.keep_kills(*figures.player_id, longest_list);
    figures.player_name = name_of(db, *figures.player_id, figures.kills);
    return figures;
}

} // namespace tally::ui
