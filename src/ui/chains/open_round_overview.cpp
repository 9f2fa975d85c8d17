#include "ui/chains/open_round_overview.h"

#include "data/master/master_cache.h"
#include "data/store/tally_db.h"
#include "ui/chains/hero_pair_list.h"
#include "ui/chains/round_overview_window.h"

#include <QMessageBox>

namespace tally::ui {
namespace {

/// What the store says may look like rich text.
void show_box(QMessageBox::Icon icon, const QString &title, const QString &text, QWidget *parent)
{
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

std::optional<data::FortOfChain> fort_of(const data::TallyDb &db, const data::ChainRun &chain)
{
    if (chain.fort_file_name.isEmpty())
        return std::nullopt;
    try {
        return db.fort_of_chain(chain.file_name);
    } catch (const std::exception &) {
        return std::nullopt; // logged by the store; the chain can be shown without
    }
}

void open_window(const data::TallyDb &db, const HeroPairChoice &pair,
                 std::vector<data::ChainRun> chains, const QString &icon_dir, QWidget *parent)
{
    std::vector<std::optional<data::FortOfChain>> forts;
    forts.reserve(chains.size());
    for (const data::ChainRun &chain : chains)
        forts.push_back(fort_of(db, chain));
    const data::MasterCache &master = data::MasterCache::instance();
    auto *window = new RoundOverviewWindow(pair.hero_1, pair.hero_2, master.hero_name(pair.hero_1),
                                           master.hero_name(pair.hero_2), std::move(chains),
                                           std::move(forts), icon_dir, parent);
    window->show();
}

} // namespace

void open_round_overview(const data::TallyDb &db, const HeroPairChoice &pair, double npc_btype,
                         std::optional<double> player, const QString &icon_dir, QWidget *parent)
{
    std::vector<data::ChainRun> chains;
    try {
        chains =
            db.chains_for_pair(pair.hero_1, pair.hero_2, npc_btype, pair.from, pair.to, player);
    } catch (const std::exception &failure) {
        show_box(
            QMessageBox::Warning, QStringLiteral("Error"),
            QStringLiteral("Failed to load chains: %1").arg(QString::fromLocal8Bit(failure.what())),
            parent);
        return;
    }
    if (chains.empty())
        show_box(QMessageBox::Information, QStringLiteral("No data"),
                 QStringLiteral("No chains found for this hero pair in the current filter."),
                 parent);
    else
        open_window(db, pair, std::move(chains), icon_dir, parent);
}

} // namespace tally::ui
