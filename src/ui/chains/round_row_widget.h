#pragma once

#include "ui/chains/round_look.h"

#include <QFrame>
#include <QString>

class QLabel;

namespace tally::ui {

class RewardStrip;

/// The row of one round. It can be given another round at any time, which costs a fraction of a new
/// row; only its tint stays.
class RoundRowWidget : public QFrame {
    Q_OBJECT

public:
    RoundRowWidget(RowTint tint, QString icon_dir, QWidget *parent);

    RowTint tint() const { return tint_; }
    /// \param look of the same tint
    void show_round(const RoundLook &look);

    /// Of a row of this width.
    int height_for(size_t rewards, int width) const;
    /// Narrower rows have no room for a few rewards side by side.
    static int least_width();
    static constexpr int left_margin = 6;

private:
    RowTint tint_;
    QLabel *number_;
    QLabel *status_;
    QLabel *target_;
    QLabel *tag_;
    QLabel *damage_taken_;
    QLabel *damage_dealt_;
    RewardStrip *rewards_;
};

} // namespace tally::ui
