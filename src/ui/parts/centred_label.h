#pragma once

#include <QString>

class QLabel;

namespace tally::ui {

/// A label without a parent that shows a text as it is, in the middle.
QLabel *centred_label(const QString &text, const QString &style);

} // namespace tally::ui
