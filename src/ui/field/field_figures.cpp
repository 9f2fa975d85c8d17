#include "ui/field/field_figures.h"

#include "data/store/tally_db.h"
#include "ui/parts/part_queries.h"

namespace tally::ui {
namespace {

constexpr int most_attacks = 1000;

FieldAttacks read_attacks(const data::TallyDb &db, const data::ChangeStamp &reports, FieldMode mode,
                          const FieldFilter &filter)
{
    FieldAttacks read{{reports, filter, {}}, {}, {}};
    for (const QVariant &row : db.field_attacks(filter.from, filter.to, filter.player, most_attacks,
                                                static_cast<int>(mode)))
        read.attacks.push_back(attack_in(row.toMap(), read.source.heroes));
    read.rows = field_rows(read.attacks);
    return read;
}

bool is_shown(const FieldQuestion &question, const data::ChangeStamp &reports,
              const FieldFilter &filter)
{
    const std::optional<FieldSource> &shown = question.shown;
    return shown && shown->reports == reports && shown->filter == filter &&
           shown->heroes.still_hold();
}

} // namespace

FieldFigures field_figures(const data::TallyDb &db, const FieldQuestion &question,
                           const std::function<bool()> &is_outdated)
{
    FieldFigures figures;
    figures.filter = question.filter;
    const PartQueries asking(is_outdated);
    std::optional<std::vector<data::PlayerRow>> accounts;
    asking.ask(accounts, [&] { return db.field_players(); });
    figures.players = player_entries(accounts.value_or(std::vector<data::PlayerRow>()));
    figures.chosen_player =
        chosen_player(figures.players, {question.player_text, question.filter.player});
    figures.filter.player = figures.players.at(figures.chosen_player).id;

    const FieldFilter &filter = figures.filter;
    std::optional<data::FieldSummary> summary;
    asking.ask(summary, [&] {
        return db.field_summary(filter.from, filter.to, filter.player,
                                static_cast<int>(question.mode));
    });
    figures.summary = summary.value_or(data::FieldSummary());

    std::optional<data::ChangeStamp> reports;
    asking.ask(reports, [&] { return db.change_stamp(); });
    if (!reports || !is_shown(question, *reports, filter))
        asking.ask(figures.attacks, [&] {
            return read_attacks(db, reports.value_or(data::ChangeStamp()), question.mode, filter);
        });
    return figures;
}

} // namespace tally::ui
