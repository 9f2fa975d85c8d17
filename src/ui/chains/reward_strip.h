#pragma once

#include "data/mail/loot_entry.h"

#include <QString>
#include <QWidget>

#include <vector>

class QLabel;

namespace tally::ui {

/// The rewards of a round as tiles, on as many lines as its width asks for.
class RewardStrip : public QWidget {
    Q_OBJECT

public:
    explicit RewardStrip(QString icon_dir, QWidget *parent = nullptr);

    void show_rewards(const std::vector<data::LootEntry> &rewards);

    static constexpr int tile_size = 48;
    static constexpr int spacing = 4;
    /// How many tiles stand side by side, at least one. They move a little closer where one more
    /// fits then.
    static int per_line(int width);
    /// 0 without rewards.
    static int height_for(size_t rewards, int width);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void place();
    QLabel *tile(size_t index);

    QString icon_dir_;
    size_t shown_ = 0;
    std::vector<QLabel *> tiles_;
};

} // namespace tally::ui
