#pragma once

#include "data/store/chain_records.h"

#include <QMainWindow>
#include <QString>

#include <optional>
#include <vector>

namespace tally::ui {

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
};

} // namespace tally::ui
