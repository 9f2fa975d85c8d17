#include "ui/parts/message_box.h"

#include "ui/parts/quiet_modal.h"

namespace tally::ui {
namespace {

QMessageBox *new_box(QMessageBox::Icon icon, const QString &title, const QString &text,
                     QWidget *parent)
{
    auto *box = new QMessageBox(icon, title, text, QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

} // namespace

void show_box(QMessageBox::Icon icon, const QString &title, const QString &text, QWidget *parent)
{
    new_box(icon, title, text, parent)->open();
}

void show_late_box(QMessageBox::Icon icon, const QString &title, const QString &text,
                   QWidget *parent)
{
    open_quietly(*new_box(icon, title, text, parent));
}

} // namespace tally::ui
