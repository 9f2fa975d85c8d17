#include "ui/forts/fort_figures.h"

#include "data/store/tally_db.h"
#include "ui/parts/part_queries.h"

#include <algorithm>
#include <tuple>

namespace tally::ui {
namespace {

constexpr int longest_list = 1000;

FortLoot fort_loot(const data::TallyDb &db, const FortQuestion &question)
{
    FortLoot loot;
    loot.rows = db.fort_loot_stats(question.from, question.to, question.min_level, &loot.forts);
    const auto place = [](const data::LootStat &row) {
        return std::tuple(-row.battles, -row.total_value, row.item_type, row.item_subtype);
    };
    std::ranges::sort(loot.rows, {}, place);
    return loot;
}

} // namespace

FortFigures fort_figures(const data::TallyDb &db, const FortQuestion &question,
                         const std::function<bool()> &is_outdated)
{
    FortFigures figures;
    const PartQueries queries(is_outdated);
    queries.ask(figures.reports, [&] {
        return db.fort_list(question.from, question.to, question.min_level, longest_list);
    });
    queries.ask(figures.loot, [&] { return fort_loot(db, question); });
    return figures;
}

} // namespace tally::ui
