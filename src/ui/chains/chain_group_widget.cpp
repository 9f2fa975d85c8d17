#include "ui/chains/chain_group_widget.h"

#include "ui/parts/plain_label.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tally::ui {

ChainGroupWidget::ChainGroupWidget(QWidget *parent)
    : QFrame(parent),
      head_(plain_label({}, QStringLiteral("background: rgba(120,150,220,0.15); padding: 6px 10px; "
                                           "font-weight: bold; border-radius: 3px;")))
{
    setFrameShape(QFrame::StyledPanel);
    // A style sheet writes the "::" of a class name as "--".
    setStyleSheet(QStringLiteral("tally--ui--ChainGroupWidget { background: rgba(60,60,60,0.05); "
                                 "border: 1px solid rgba(120,150,220,0.2); border-radius: 4px; "
                                 "margin-top: 4px; margin-bottom: 4px; }"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(spacing);
    layout->addWidget(head_);
    layout->addStretch();
}

void ChainGroupWidget::show_chain(const QString &head, const QString &date)
{
    head_->setText(head);
    head_->setToolTip(date);
    setAccessibleName(head);
    layout()->activate();
}

QMargins ChainGroupWidget::insets()
{
    ensurePolished(); // the sheet's border and margin count only then
    return contentsMargins() + layout()->contentsMargins();
}

int ChainGroupWidget::head_height() const
{
    return head_->sizeHint().height();
}

} // namespace tally::ui
