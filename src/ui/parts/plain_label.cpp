#include "ui/parts/plain_label.h"

#include <QLabel>

namespace tally::ui {

QLabel *plain_label(const QString &text, const QString &style)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

QLabel *centred_label(const QString &text, const QString &style)
{
    QLabel *label = plain_label(text, style);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

} // namespace tally::ui
