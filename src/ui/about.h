#pragma once

#include <QString>

class QWidget;

namespace tally::ui {

/// "© 2026 " and the organisation.
QString copyright_line();

void show_about_box(QWidget *parent, const QString &product_page);

} // namespace tally::ui
