#include "ui/chains/chain_summary_box.h"

#include "ui/chains/chain_cards.h"
#include "ui/parts/flow_layout.h"
#include "ui/parts/plain_label.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tally::ui {

ChainSummaryBox::ChainSummaryBox(QWidget *parent) : SummaryBox(chain_card_row, parent)
{
    constexpr int gap = 20;
    auto *best = new FlowLayout(nullptr, 0, gap, 0);
    best->setAlignment(Qt::AlignHCenter);
    best_in_filter_ = add_best_chain(*best, QStringLiteral("Best chain in the filter"));
    best->addWidget(
        plain_label(QStringLiteral("|"), QStringLiteral("color: #555; font-size: 9pt;")));
    best_overall_ = add_best_chain(*best, QStringLiteral("Best chain of all"));
    rows()->addLayout(best);
}

QLabel *ChainSummaryBox::add_best_chain(QLayout &row, const QString &name)
{
    QLabel *label = plain_label({}, QStringLiteral("color: #808080; font-size: 9pt;"));
    label->setObjectName(name);
    row.addWidget(label);
    return label;
}

void ChainSummaryBox::set_best_in_filter(const QString &line)
{
    best_in_filter_->setText(line);
}

void ChainSummaryBox::set_best_overall(const QString &line)
{
    best_overall_->setText(line);
}

} // namespace tally::ui
