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

/// Bounds that no mail of the game comes near: attacks of a mail, and characters of the texts in
/// all its rows. Each row repeats the texts of the player, and buffs are longer spelled out.
inline constexpr qsizetype max_attacks = 5'000;
inline constexpr qsizetype max_row_text = 16'000'000;

/// Reads a field fight mail.
/// \return nothing if the bytes are no usable field fight mail
/// \throws OversizedMail beyond the bounds of a mail, and nothing else on bad input
std::optional<FieldReport> parse_field(QByteArrayView mail);
/// The same for a file; one that cannot be read counts as empty.
std::optional<FieldReport> parse_field(const QString &path);

} // namespace tally::data
