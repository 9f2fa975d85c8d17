#pragma once

#include <QString>
#include <QVariant>

#include <cmath>
#include <limits>
#include <optional>

namespace tally::data {

/// `value` with its fraction cut off, or nothing where an `int` cannot hold it: numbers from mails
/// are bounded by nothing, and the bare cast is undefined for those.
constexpr std::optional<int> to_int(double value)
{
    constexpr double below_min = double{std::numeric_limits<int>::min()} - 1.0;
    constexpr double above_max = double{std::numeric_limits<int>::max()} + 1.0;
    if (!(value > below_min && value < above_max)) // also false for NaN
        return std::nullopt;
    return static_cast<int>(value);
}

constexpr std::optional<int> to_int(std::optional<double> value)
{
    return value ? to_int(*value) : std::nullopt;
}

/// Whether a number is written as an integer where it serves as a key.
inline bool is_plain_integer(double value)
{
    return std::isfinite(value) && value == std::floor(value) && std::abs(value) < 1e15;
}

/// An id or the key of a map as text: 3.0 is "3".
inline QString id_text(double id)
{
    return is_plain_integer(id) ? QString::number(static_cast<qint64>(id))
                                : QString::number(id, 'g', 15);
}

/// What `QVariant::toInt` makes of a value (numbers are rounded), or nothing where it fails or
/// would wrap around.
inline std::optional<int> int_of(const QVariant &value)
{
    bool ok = false;
    if (value.typeId() == QMetaType::QString) {
        const int number = value.toString().toInt(&ok);
        return ok ? std::optional(number) : std::nullopt;
    }
    const double number = value.toDouble(&ok);
    return ok ? to_int(std::round(number)) : std::nullopt;
}

} // namespace tally::data
