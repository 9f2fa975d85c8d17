#include "ui/parts/page_note.h"

#include "ui/parts/plain_label.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace tally::ui {

PageNote::PageNote(const QString &step, const QString &after, QWidget *parent)
    : QWidget(parent), text_(plain_label({})), step_(new QPushButton(step)),
      after_(plain_label(after, QStringLiteral("color: #808080;")))
{
    step_->setAccessibleName(step);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(4, 0, 0, 0);
    row->setSpacing(10);
    row->addWidget(text_);
    row->addWidget(step_);
    row->addWidget(after_);
    row->addStretch();
    connect(step_, &QPushButton::clicked, this, &PageNote::stepTaken);
    hide();
}

void PageNote::say(const QString &text, bool offers_step)
{
    text_->setText(text);
    setAccessibleName(text);
    step_->setVisible(offers_step);
    after_->setVisible(offers_step && !after_->text().isEmpty());
    show();
}

} // namespace tally::ui
