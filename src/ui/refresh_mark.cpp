#include "ui/refresh_mark.h"

#include "ui/parts/plain_label.h"
#include "ui/start_up_chain.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>

namespace tally::ui {

RefreshMark::RefreshMark(StartUpChain &chain, QStatusBar &bar)
    : QWidget(&bar), chain_(chain), bar_(bar), text_(plain_label({})),
      button_(new QPushButton(QStringLiteral("Try again")))
{
    button_->setAccessibleName(
        QStringLiteral("%1 to refresh the reference data").arg(button_->text()));
    button_->setStyleSheet(QStringLiteral("padding: 0 8px;"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 16, 0);
    row->setSpacing(8);
    row->addWidget(text_);
    row->addWidget(button_);
    connect(button_, &QPushButton::clicked, this, &RefreshMark::try_again);
    connect(&chain_, &StartUpChain::refreshEnded, this, &RefreshMark::on_refresh_ended);
    connect(&bar_, &QStatusBar::messageChanged, this, &RefreshMark::on_message);
    bar_.insertPermanentWidget(0, this);
    hide();
}

void RefreshMark::on_refresh_ended(bool success)
{
    to_repeat_ = !success;
    text_->setText(QStringLiteral("Names may be missing."));
    button_->setEnabled(true);
    setVisible(!success);
}

/// What the import has to say follows at once, and nobody has read the first message.
void RefreshMark::on_message(const QString &text)
{
    if (!text.isEmpty() || !to_repeat_ || chain_.importing())
        return;
    to_repeat_ = false;
    bar_.showMessage(StartUpChain::refresh_failed_text(), StartUpChain::refresh_failed_ms);
}

void RefreshMark::try_again()
{
    to_repeat_ = false;
    text_->setText(QStringLiteral("Asking the server again…"));
    button_->setEnabled(false);
    chain_.refresh_again();
}

} // namespace tally::ui
