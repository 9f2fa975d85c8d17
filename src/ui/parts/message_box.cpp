#include "ui/parts/message_box.h"

namespace tally::ui {

void show_box(QMessageBox::Icon icon, const QString &title, const QString &text, QWidget *parent)
{
    auto *box = new QMessageBox(icon, title, text, QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace tally::ui
