#include "ui/parts/summary_card.h"

#include "ui/parts/format_count.h"
#include "ui/parts/plain_label.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tally::ui {

SummaryCard::SummaryCard(const QString &title, QWidget *parent)
    : QFrame(parent),
      value_label_(centred_label(QStringLiteral("—"),
                                 QStringLiteral("font-size: 15px; font-weight: bold; "
                                                "background: transparent; border: none;"))),
      title_label_(centred_label(title, QStringLiteral("color: #888; font-size: 9pt; "
                                                       "background: transparent; border: none;")))
{
    setFrameShape(QFrame::NoFrame);
    // A style sheet writes the "::" of a class's full name as "--".
    setStyleSheet(QStringLiteral("tally--ui--SummaryCard {"
                                 "  background-color: rgba(88, 101, 242, 0.12);"
                                 "  border: 1px solid rgba(88, 101, 242, 0.40);"
                                 "  border-radius: 6px;"
                                 "}"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(2);
    layout->addWidget(value_label_);
    layout->addWidget(title_label_);
    set_text(value_label_->text());
}

void SummaryCard::set_value(qint64 value)
{
    set_text(format_count(value));
}

void SummaryCard::set_text(const QString &text)
{
    value_label_->setText(text);
    setAccessibleName(QStringLiteral("%1: %2").arg(title_label_->text(), text));
}

} // namespace tally::ui
