#include "ui/parts/details_dialog.h"

#include <QDialogButtonBox>
#include <QVBoxLayout>

namespace tally::ui {

DetailsDialog::DetailsDialog(const QString &title, QSize size, int margin, int spacing,
                             QWidget *parent)
    : QDialog(parent), layout_(new QVBoxLayout(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    // An alert over the game can still be clicked.
    setWindowModality(Qt::WindowModal);
    setWindowTitle(title);
    resize(size);
    layout_->setContentsMargins(margin, margin, margin, margin);
    layout_->setSpacing(spacing);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    if (margin == 0)
        buttons->setContentsMargins(10, 8, 10, 8);
    layout_->addWidget(buttons);
}

void DetailsDialog::add(QWidget *widget, int stretch)
{
    layout_->insertWidget(filled_++, widget, stretch);
}

} // namespace tally::ui
