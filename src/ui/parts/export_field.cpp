#include "ui/parts/export_field.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace tally::ui {
namespace {

constexpr QStringView formula_starts = u"=+-@\t\r";
constexpr QStringView breaks = u"\t\r\n";
constexpr QStringView quoted_in_csv = u",\"\r\n";

/// Beyond it a double no longer tells whole numbers apart, and many digits say nothing.
constexpr double longest_plain = 1e15;

bool has_any_of(QStringView text, QStringView characters)
{
    return std::ranges::any_of(text, [=](QChar c) { return characters.contains(c); });
}

QString number_text(double number)
{
    if (!std::isfinite(number))
        return {};
    return QString::number(number, std::abs(number) < longest_plain ? 'f' : 'g',
                           QLocale::FloatingPointShortest);
}

bool reads_as_number(const QString &text)
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    return ok && std::isfinite(number);
}

QString defused(const QString &text)
{
    const bool is_formula = !text.isEmpty() && formula_starts.contains(text.front());
    return is_formula && !reads_as_number(text) ? u'\'' + text : text;
}

QString field_text(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
        return number_text(value.toDouble());
    default:
        return defused(value.toString());
    }
}

QString quoted(QString text)
{
    return u'"' + text.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

} // namespace

QString tab_field(const QVariant &value)
{
    QString text = field_text(value);
    std::ranges::replace_if(
        text, [](QChar c) { return breaks.contains(c); }, u' ');
    // A quote at the start would swallow what follows up to the next quote.
    return text.startsWith(u'"') ? quoted(text) : text;
}

QString csv_field(const QVariant &value)
{
    const QString text = field_text(value);
    return has_any_of(text, quoted_in_csv) ? quoted(text) : text;
}

} // namespace tally::ui
