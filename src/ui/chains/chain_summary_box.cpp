#include "ui/chains/chain_summary_box.h"

#include "ui/parts/card_layout.h"
#include "ui/parts/flow_layout.h"
#include "ui/parts/plain_label.h"
#include "ui/parts/summary_card.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tally::ui {

ChainSummaryBox::ChainSummaryBox(QWidget *parent) : QGroupBox(parent)
{
    set_counting(false);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(4);
    auto *cards = new CardLayout(6);
    for (std::size_t i = 0; i < cards_.size(); ++i) {
        cards_.at(i) = new SummaryCard(QString::fromUtf16(chain_card_row.at(i).title));
        cards_.at(i)->setObjectName(chain_card_row.at(i).key);
        cards->addWidget(cards_.at(i));
    }
    layout->addLayout(cards);

    constexpr int gap = 20;
    auto *best = new FlowLayout(nullptr, 0, gap, 0);
    best->setAlignment(Qt::AlignHCenter);
    best_in_filter_ = add_best_chain(*best, QStringLiteral("Best chain in the filter"));
    best->addWidget(
        plain_label(QStringLiteral("|"), QStringLiteral("color: #555; font-size: 9pt;")));
    best_overall_ = add_best_chain(*best, QStringLiteral("Best chain of all"));
    layout->addLayout(best);
}

QLabel *ChainSummaryBox::add_best_chain(QLayout &row, const QString &name)
{
    QLabel *label = plain_label({}, QStringLiteral("color: #808080; font-size: 9pt;"));
    label->setObjectName(name);
    row.addWidget(label);
    return label;
}

void ChainSummaryBox::set_cards(const ChainCardTexts &texts)
{
    for (std::size_t i = 0; i < cards_.size(); ++i)
        cards_.at(i)->set_text(texts.at(i));
}

void ChainSummaryBox::set_best_in_filter(const QString &line)
{
    best_in_filter_->setText(line);
}

void ChainSummaryBox::set_best_overall(const QString &line)
{
    best_overall_->setText(line);
}

void ChainSummaryBox::set_counting(bool counting)
{
    setTitle(counting ? QStringLiteral("Summary (counting…)") : QStringLiteral("Summary"));
    setAccessibleName(title());
}

} // namespace tally::ui
