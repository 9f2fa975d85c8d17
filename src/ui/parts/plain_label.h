#pragma once

#include <QString>

class QLabel;

namespace tally::ui {

/// Labels without a parent that show a text as it is: names that come from reports may look like
/// rich text.

/// \param style a style sheet
QLabel *plain_label(const QString &text, const QString &style = {});
/// In the middle.
QLabel *centred_label(const QString &text, const QString &style);

} // namespace tally::ui
