#pragma once

#include "ui/parts/moment_text.h"

#include <QDate>
#include <QString>

#include <optional>

namespace tally::ui {

inline const QString day_start = QStringLiteral("00:00");
inline const QString day_end = QStringLiteral("23:59");

/// What a page of field fights is asked for. Seconds since the Unix epoch; `from` is included, `to`
/// is not. What is absent is no limit.
struct FieldFilter {
    std::optional<double> from;
    std::optional<double> to;
    std::optional<double> player;

    bool operator==(const FieldFilter &) const = default;
};

/// What was typed as seconds since the Unix epoch, read as UTC; nothing without a date, and for
/// what is no date or time. \param time_if_empty with seconds
std::optional<double> typed_moment(const MomentTexts &texts, const QString &time_if_empty);

/// All of the last minute belongs to the period.
FieldFilter field_filter(const MomentTexts &from, const MomentTexts &to,
                         std::optional<double> player);

/// A day so many days after the one that was typed, or after today if that is none.
QString shifted_date(const QString &date, int days, QDate today);

} // namespace tally::ui
