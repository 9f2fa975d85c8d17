#include "ui/parts/summary_box.h"

#include "queries/asker.h"
#include "ui/parts/card_layout.h"
#include "ui/parts/summary_card.h"

#include <QVBoxLayout>

namespace tally::ui {

SummaryBox::SummaryBox(std::span<const CardTitle> cards, QWidget *parent)
    : QGroupBox(parent), rows_(new QVBoxLayout(this))
{
    constexpr int row_spacing = 4;
    constexpr int card_spacing = 6;
    set_counting(false);
    rows_->setSpacing(row_spacing);
    auto *row = new CardLayout(card_spacing);
    for (const CardTitle &card : cards) {
        cards_.push_back(new SummaryCard(QString::fromUtf16(card.title)));
        cards_.back()->setObjectName(card.key);
        row->addWidget(cards_.back());
    }
    rows_->addLayout(row);
    counting_sign_.setSingleShot(true);
    connect(&counting_sign_, &QTimer::timeout, this, [this] { set_counting(true); });
}

void SummaryBox::set_cards(std::span<const QString> texts)
{
    for (std::size_t i = 0; i < cards_.size(); ++i)
        cards_[i]->set_text(texts[i]);
}

void SummaryBox::show_counting_of(const queries::Asker &figures, std::chrono::milliseconds after)
{
    counting_sign_.setInterval(after);
    connect(&figures, &queries::Asker::busyChanged, this, [this](bool busy) {
        if (busy)
            return counting_sign_.start();
        counting_sign_.stop();
        set_counting(false);
    });
}

void SummaryBox::set_counting(bool counting)
{
    setTitle(counting ? QStringLiteral("Summary (counting…)") : QStringLiteral("Summary"));
    setAccessibleName(title());
}

} // namespace tally::ui
