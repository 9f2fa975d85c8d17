#pragma once

#include "ui/chains/chain_figures.h"

#include <QDate>
#include <QWidget>

#include <optional>

namespace tally::ui {

class PageNote;

/// Why the page shows no chains, and what leads to some.
class ChainGapNotes : public QWidget {
    Q_OBJECT

public:
    explicit ChainGapNotes(QWidget *parent = nullptr);

    /// \param gap nothing where there are chains
    void show_gap(const std::optional<ChainGap> &gap);

Q_SIGNALS:
    void folderWanted();
    void dayWanted(QDate day);

private:
    PageNote *folder_;
    PageNote *period_;
    QDate last_day_;
};

} // namespace tally::ui
