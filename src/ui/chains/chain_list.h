#pragma once

#include "ui/chains/round_overview.h"
#include "ui/chains/scroll_scale.h"
#include "ui/chains/stack_geometry.h"

#include <QAbstractScrollArea>
#include <QMargins>
#include <QString>

#include <map>
#include <utility>
#include <vector>

namespace tally::ui {

class ChainGroupWidget;
class RoundRowWidget;

/// All chains one under the other, to scroll through. Only what is in view has widgets, and those
/// that leave the view are given what enters it: thousands of rows would take seconds to build.
///
/// The heads of all chains tell their heights, but for rewards that need a second line. Rounds are
/// wanted when they come near the view; a height that they correct moves nothing in view. Places
/// are 64-bit offsets of the list's own, as no widget can be higher than 16,777,215 pixels.
class ChainList : public QAbstractScrollArea {
    Q_OBJECT

public:
    ChainList(RoundOverview overview, QString icon_dir, QWidget *parent = nullptr);

    const RoundOverview &overview() const { return overview_; }
    /// Answers `roundsWanted`.
    void show_rounds(size_t first, std::vector<ChainRounds> rounds);
    /// Pixels of the list above the view.
    qint64 offset() const { return offset_; }
    qint64 total_height() const { return chains_.total_height(); }
    /// Where the columns of the rows begin.
    int rows_left() const;

Q_SIGNALS:
    /// The chains from `first` to before `last` come near the view, and not all their rounds are
    /// known. Not repeated while the same are wanted.
    void roundsWanted(size_t first, size_t last);

protected:
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    using Row = std::pair<size_t, size_t>; ///< chain and row

    int content_width() const;
    int row_width() const;
    void make_models();
    /// Of a chain as far as it is known. Remembers where its rows stand.
    qint64 measure(size_t chain);
    void measure_known();
    void set_height(size_t chain, qint64 height);
    void update_bars();
    std::vector<Row> rows_between(qint64 top, qint64 bottom) const;
    void fill_view();
    void want_rounds();
    void place_group(size_t chain);
    void place_row(const Row &row);
    ChainGroupWidget *take_group();
    RoundRowWidget *take_row(RowTint tint);
    void hide_spares();

    RoundOverview overview_;
    QString icon_dir_;
    StackGeometry chains_;
    std::map<size_t, StackGeometry> rows_; ///< of each known chain: its headline, then its rows
    QMargins group_insets_;
    int head_height_ = 0;
    RoundRowWidget *model_row_ = nullptr; ///< asked for heights, never shown
    qint64 offset_ = 0;
    ScrollScale scale_;
    bool is_updating_bars_ = false;
    int measured_width_ = 0; ///< of a row, when the known chains were measured
    std::pair<size_t, size_t> wanted_{0, 0};
    std::map<size_t, ChainGroupWidget *> groups_in_view_;
    std::map<Row, RoundRowWidget *> rows_in_view_;
    std::vector<ChainGroupWidget *> spare_groups_;
    std::map<RowTint, std::vector<RoundRowWidget *>> spare_rows_;
};

} // namespace tally::ui
