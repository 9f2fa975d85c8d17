#pragma once

#include "ui/chains/round_look.h"

#include <QFrame>
#include <QString>

#include <vector>

class QHBoxLayout;
class QLabel;

namespace tally::ui {

/// The row of one round. It can be given another round at any time, which costs a fraction of a new
/// row; only its tint stays.
class RoundRowWidget : public QFrame {
    Q_OBJECT

public:
    RoundRowWidget(RowTint tint, QString icon_dir, QWidget *parent);

    RowTint tint() const { return tint_; }
    /// \param look of the same tint
    void show_round(const RoundLook &look);

    /// Of a row with or without rewards.
    int height_for(size_t rewards) const;
    int minimum_width_for(size_t rewards) const;

private:
    void show_rewards(const std::vector<data::LootEntry> &rewards);
    QLabel *tile(size_t index);

    RowTint tint_;
    QString icon_dir_;
    QLabel *number_;
    QLabel *status_;
    QLabel *target_;
    QLabel *tag_;
    QLabel *damage_taken_;
    QLabel *damage_dealt_;
    QHBoxLayout *rewards_;
    std::vector<QLabel *> tiles_;
};

} // namespace tally::ui
