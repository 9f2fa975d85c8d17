#include "ui/trials/trial_figures.h"

#include "data/store/tally_db.h"
#include "ui/parts/part_queries.h"
#include "ui/trials/trial_texts.h"

#include <QSet>

#include <algorithm>

namespace tally::ui {

const data::TrialSession *session_with(const std::vector<data::TrialSession> &sessions,
                                       const QStringList &file_names)
{
    const QSet<QString> wanted(file_names.begin(), file_names.end());
    const auto found = std::ranges::find_if(sessions, [&](const data::TrialSession &session) {
        return std::ranges::any_of(session.file_names,
                                   [&](const QString &file) { return wanted.contains(file); });
    });
    return found == sessions.end() ? nullptr : &*found;
}

TrialFigures trial_figures(const data::TallyDb &db, const TrialQuestion &question,
                           const std::function<bool()> &is_outdated)
{
    const QStringList &bosses = question.bosses;
    const double from = question.from;
    const double to = question.to;
    TrialFigures figures;
    const PartQueries queries(is_outdated);
    queries.ask(figures.players, [&] { return db.trial_players(bosses, from, to); });
    QString player = question.player;
    const auto is_asked = [&](const data::TrialPlayerRow &row) {
        return row.name == question.player;
    };
    if (!figures.players || std::ranges::none_of(*figures.players, is_asked))
        player.clear();
    queries.ask(figures.sessions,
                [&] { return db.trial_sessions(bosses, from, to, question.gap_minutes); });
    queries.ask(figures.loot, [&] {
        return loot_card_order(db.trial_loot_stats(bosses, from, to, player, nullptr));
    });
    if (!figures.sessions || figures.sessions->empty())
        return figures;
    const data::TrialSession *selected = session_with(*figures.sessions, question.session_files);
    const data::TrialSession &session = selected ? *selected : figures.sessions->front();
    queries.ask(figures.selected, [&] {
        return SessionFigures{session, db.session_players(session.file_names)};
    });
    return figures;
}

} // namespace tally::ui
