#pragma once

#include <QMessageBox>

namespace tally::ui {

/// Shows a plain text in a box over `parent` and returns at once.
void show_box(QMessageBox::Icon icon, const QString &title, const QString &text, QWidget *parent);

/// The same for what comes of something that takes its time: by then the user may have turned to
/// another program, which keeps the keyboard.
void show_late_box(QMessageBox::Icon icon, const QString &title, const QString &text,
                   QWidget *parent);

} // namespace tally::ui
