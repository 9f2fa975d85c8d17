#include "ui/chains/chain_figures.h"

#include "data/master/item_facts.h"
#include "data/store/sql_values.h"
#include "data/store/tally_db.h"
#include "ui/parts/part_queries.h"

#include <QFileInfo>

#include <algorithm>
#include <optional>
#include <tuple>

namespace tally::ui {
namespace {

void complete(data::LootStat &row)
{
    row = data::with_item_facts(std::move(row), data::known_item);
    if (!row.name.isEmpty())
        row.total_value = data::saturated<qint64>(row.pieces * row.unit_value + 0.5);
}

ChainGap chain_gap(const data::TallyDb &db, const ChainFilter &filter, const QString &mail_folder)
{
    return {!mail_folder.isEmpty() && QFileInfo(mail_folder).isDir(),
            db.last_chain(filter.btype, filter.player)};
}

} // namespace

std::vector<data::LootStat> loot_rows(std::vector<data::LootStat> rows)
{
    for (data::LootStat &row : rows) {
        if (row.name.isEmpty())
            complete(row);
    }
    const auto place = [](const data::LootStat &row) {
        return std::tuple(-row.battles, -row.total_value, row.item_type, row.item_subtype);
    };
    std::sort(rows.begin(), rows.end(),
              [&place](const auto &one, const auto &other) { return place(one) < place(other); });
    return rows;
}

ChainFigures chain_figures(const data::TallyDb &db, const ChainPageQuestion &question,
                           const std::function<bool()> &is_outdated)
{
    ChainFigures figures;
    figures.filter = question.filter;
    const PartQueries asking(is_outdated);
    asking.ask(figures.players, [&] { return player_entries(db.players()); });
    if (figures.players) {
        figures.chosen_player =
            chosen_player(*figures.players, {question.player_text, question.filter.player});
        figures.filter.player = figures.players->at(figures.chosen_player).id;
    }
    const double btype = figures.filter.btype;
    const std::optional<double> from = figures.filter.from;
    const std::optional<double> to = figures.filter.to;
    const std::optional<double> player = figures.filter.player;
    asking.ask(figures.summary, [&] { return db.summary(btype, from, to, player); });
    if (figures.summary && figures.summary->files == 0)
        asking.ask(figures.gap,
                   [&] { return chain_gap(db, figures.filter, question.mail_folder); });
    asking.ask(figures.best_in_filter, [&] { return db.best_chain(btype, from, to, player); });
    asking.ask(figures.best_overall, [&] { return db.best_chain(btype, {}, {}, {}); });
    asking.ask(figures.hourly, [&] { return db.hourly(btype, from, to, player); });
    asking.ask(figures.loot, [&] { return loot_rows(db.loot_stats(btype, from, to, player)); });
    asking.ask(figures.hero_pairs, [&] { return db.hero_pairs(btype, from, to, player); });
    return figures;
}

} // namespace tally::ui
