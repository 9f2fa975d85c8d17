#pragma once

#include "data/store/chain_records.h"

#include <QFrame>

class QLabel;

namespace tally::ui {

/// The sum of one item: its tile with two lines beside it.
class LootCard : public QFrame {
    Q_OBJECT

public:
    explicit LootCard(QWidget *parent = nullptr);

    void show_stat(const data::LootStat &stat, const QString &icon_dir);

private:
    QLabel *tile_;
    QLabel *name_;
    QLabel *amount_;
};

} // namespace tally::ui
