#pragma once

#include "ui/chains/chain_cards.h"

#include <QGroupBox>
#include <QString>

#include <array>

class QLabel;
class QLayout;

namespace tally::ui {

class SummaryCard;

/// The row of cards, and the best chains under it.
class ChainSummaryBox : public QGroupBox {
    Q_OBJECT

public:
    explicit ChainSummaryBox(QWidget *parent);

    void set_cards(const ChainCardTexts &texts);
    void set_best_in_filter(const QString &line);
    void set_best_overall(const QString &line);
    /// A quiet sign that figures are on their way.
    void set_counting(bool counting);

private:
    QLabel *add_best_chain(QLayout &row, const QString &name);

    std::array<SummaryCard *, chain_card_row.size()> cards_;
    QLabel *best_in_filter_;
    QLabel *best_overall_;
};

} // namespace tally::ui
