#pragma once

class QLabel;
class QString;

namespace tally::ui {

/// A "✕" that closes its window at the press of any button.
QLabel *new_close_label(const QString &style);

} // namespace tally::ui
