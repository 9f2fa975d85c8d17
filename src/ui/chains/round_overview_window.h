#pragma once

#include "data/store/chain_records.h"
#include "ui/parts/view_asker.h"

#include <QMainWindow>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace tally::ui {

class ChainList;
class RoundOverview;

/// Every round that a pair of heroes fought, chain by chain, and what happened in it. Application
/// modal; deletes itself when closed.
class RoundOverviewWindow : public QMainWindow {
    Q_OBJECT

public:
    /// \param chains newest first
    /// \param forts the fort of each chain, in the same order; may be shorter
    /// \param parent the window is sized by it and centred on it
    RoundOverviewWindow(int hero_1, int hero_2, const QString &hero_name_1,
                        const QString &hero_name_2, std::vector<data::ChainRun> chains,
                        std::vector<std::optional<data::FortOfChain>> forts, QString icon_dir,
                        QWidget *parent = nullptr);
    /// Asks for the rounds of a chain when they come near the view.
    /// \param queries outlives the window
    RoundOverviewWindow(queries::StoreQueries &queries, const QString &hero_name_1,
                        const QString &hero_name_2, std::vector<data::ChainHead> heads,
                        QString icon_dir, QWidget *parent = nullptr);

private:
    void build(RoundOverview overview, const QString &hero_name_1, const QString &hero_name_2,
               QString icon_dir);
    void ask_for_rounds(size_t first, size_t last);

    ChainList *list_ = nullptr;
    std::unique_ptr<ViewAsker> rounds_; ///< none if all rounds are known
};

} // namespace tally::ui
