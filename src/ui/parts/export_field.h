#pragma once

#include <QString>
#include <QVariant>

namespace tally::ui {

/// A cell's value as a field of a row for other programs: numbers bare, as every spreadsheet reads
/// them; a text that a spreadsheet would run as a formula with an apostrophe before it.

/// Between tabs: the text's own tabs and line breaks become blanks.
QString tab_field(const QVariant &value);
/// Between commas, quoted by RFC 4180 where it has to be.
QString csv_field(const QVariant &value);

} // namespace tally::ui
