#pragma once

#include "ui/parts/summary_box.h"

class QLabel;
class QLayout;

namespace tally::ui {

/// The row of cards, and the best chains under it.
class ChainSummaryBox : public SummaryBox {
    Q_OBJECT

public:
    explicit ChainSummaryBox(QWidget *parent);

    void set_best_in_filter(const QString &line);
    void set_best_overall(const QString &line);

private:
    QLabel *add_best_chain(QLayout &row, const QString &name);

    QLabel *best_in_filter_;
    QLabel *best_overall_;
};

} // namespace tally::ui
