#include "ui/chains/open_round_overview.h"

#include "data/master/master_cache.h"
#include "data/store/tally_db.h"
#include "queries/asker.h"
#include "ui/chains/hero_pair_list.h"
#include "ui/chains/round_overview_window.h"
#include "ui/parts/message_box.h"
#include "ui/parts/quiet_modal.h"

namespace tally::ui {
namespace {

void open_window(queries::StoreQueries &queries, const HeroPairChoice &pair,
                 std::vector<data::ChainHead> heads, const QString &icon_dir, bool had_keyboard,
                 QWidget *parent)
{
    if (heads.empty()) {
        show_box(QMessageBox::Information, QStringLiteral("No data"),
                 QStringLiteral("No chains found for this hero pair in the current filter."),
                 parent);
        return;
    }
    const data::MasterCache &master = data::MasterCache::instance();
    auto *window =
        new RoundOverviewWindow(queries, master.hero_name(pair.hero_1),
                                master.hero_name(pair.hero_2), std::move(heads), icon_dir, parent);
    open_late(*window, had_keyboard);
}

} // namespace

void open_round_overview(queries::Asker &asker, queries::StoreQueries &queries,
                         const HeroPairChoice &pair, double npc_btype, std::optional<double> player,
                         const QString &icon_dir, QWidget *parent)
{
    asker.ask(
        [pair, npc_btype, player](const data::TallyDb &db, const queries::IsOutdated &) {
            return db.chain_heads_for_pair(pair.hero_1, pair.hero_2,
                                           db.question(npc_btype, pair.from, pair.to, player));
        },
        [&queries, pair, icon_dir, had_keyboard = has_keyboard(),
         parent](std::vector<data::ChainHead> heads) {
            open_window(queries, pair, std::move(heads), icon_dir, had_keyboard, parent);
        },
        [parent](const QString &what) {
            show_box(QMessageBox::Warning, QStringLiteral("Error"),
                     QStringLiteral("Failed to load chains: %1").arg(what), parent);
        });
}

} // namespace tally::ui
