#pragma once

#include "data/values/numbers.h"

#include <QString>
#include <QVariant>

#include <limits>
#include <optional>

namespace tally::data {

/// Between optional fields and the values of a statement: nothing is NULL.

template <typename T>
QVariant nullable(const std::optional<T> &value)
{
    return value ? QVariant(*value) : QVariant();
}

inline QVariant null_if_empty(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

/// A text that is always there: Qt binds a null `QString` as NULL.
inline QVariant not_null(const QString &text)
{
    return text.isNull() ? QVariant(QStringLiteral("")) : QVariant(text);
}

/// Nothing for NULL and for what is no number.
inline std::optional<double> number_in(const QVariant &value)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok && !value.isNull() ? std::optional(number) : std::nullopt;
}

/// Nothing for NULL, for what is no number and for what an `int` cannot hold.
inline std::optional<int> int_in(const QVariant &value)
{
    return to_int(number_in(value));
}

/// The value of a count or time that is 0 where the database has none.
inline double number_or_zero(const QVariant &value)
{
    return number_in(value).value_or(0.0);
}

/// `value` with its fraction cut off; the nearest there is for what the type cannot hold, 0 for
/// NaN.
template <typename Int = int>
Int saturated(double value)
{
    using Limits = std::numeric_limits<Int>;
    // Below -min every double fits; -min itself is a power of two and exact.
    if (value >= -static_cast<double>(Limits::min()))
        return Limits::max();
    if (value <= static_cast<double>(Limits::min()))
        return Limits::min();
    return value == value ? static_cast<Int>(value) : 0;
}

} // namespace tally::data
