#include "ui/parts/centred_label.h"

#include <QLabel>

namespace tally::ui {

QLabel *centred_label(const QString &text, const QString &style)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setStyleSheet(style);
    return label;
}

} // namespace tally::ui
