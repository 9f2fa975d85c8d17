#pragma once

#include <QByteArrayView>
#include <QString>
#include <QVariantList>

#include <optional>

namespace tally::data {

/// The attacks of one field fight mail in their order: one `QVariantMap` each, whose keys are the
/// column names of the table `field_reports`. Values keep their decoded type; what the mail does
/// not hold is an invalid variant.
using FieldReport = QVariantList;

/// Reads a field fight mail.
/// \return nothing if the bytes are no usable field fight mail; never throws on bad input.
std::optional<FieldReport> parse_field(QByteArrayView mail);
/// The same for a file; one that cannot be read counts as empty.
std::optional<FieldReport> parse_field(const QString &path);

} // namespace tally::data
