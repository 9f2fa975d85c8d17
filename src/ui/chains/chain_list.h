#pragma once

#include "ui/chains/round_overview.h"
#include "ui/chains/stack_geometry.h"

#include <QMargins>
#include <QScrollArea>
#include <QString>

#include <map>
#include <utility>
#include <vector>

namespace tally::ui {

class ChainGroupWidget;
class RoundRowWidget;

/// All chains one under the other, to scroll through. Only what is in view has widgets, and those
/// that leave the view are given what enters it: thousands of rows would take seconds to build. All
/// heights are known beforehand, so nothing jumps.
class ChainList : public QScrollArea {
    Q_OBJECT

public:
    ChainList(RoundOverview overview, QString icon_dir, QWidget *parent = nullptr);

protected:
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    using Row = std::pair<size_t, size_t>; ///< chain and row

    /// \return the width of the widest row
    int measure();
    std::vector<Row> rows_between(int top, int bottom) const;
    void fill_view();
    void place_group(size_t chain);
    void place_row(const Row &row);
    ChainGroupWidget *take_group();
    RoundRowWidget *take_row(RowTint tint);
    void hide_spares();

    RoundOverview overview_;
    QString icon_dir_;
    StackGeometry chains_;
    std::vector<StackGeometry> rows_; ///< one a chain: its headline, then its rows
    QMargins group_insets_;
    std::map<size_t, ChainGroupWidget *> groups_in_view_;
    std::map<Row, RoundRowWidget *> rows_in_view_;
    std::vector<ChainGroupWidget *> spare_groups_;
    std::map<RowTint, std::vector<RoundRowWidget *>> spare_rows_;
};

} // namespace tally::ui
