#pragma once

#include <QMessageBox>

namespace tally::ui {

/// Shows a plain text in a box over `parent` and returns at once.
void show_box(QMessageBox::Icon icon, const QString &title, const QString &text, QWidget *parent);

} // namespace tally::ui
