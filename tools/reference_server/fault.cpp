#include "fault.h"

#include <QMap>

namespace tally::reference {

std::optional<Fault> parse_fault(QStringView text)
{
    static const QMap<QString, Fault::Kind> kinds = {
        {QStringLiteral("slow"), Fault::Kind::Slow},
        {QStringLiteral("silent"), Fault::Kind::Silent},
        {QStringLiteral("status"), Fault::Kind::Status},
        {QStringLiteral("cut"), Fault::Kind::Cut},
        {QStringLiteral("redirect"), Fault::Kind::Redirect},
        {QStringLiteral("short"), Fault::Kind::Short},
        {QStringLiteral("garbled"), Fault::Kind::Garbled},
        {QStringLiteral("endless"), Fault::Kind::Endless},
    };
    const qsizetype at = text.indexOf(u'@');
    const QStringView what = at < 0 ? text : text.first(at);
    const qsizetype equals = what.indexOf(u'=');
    const QStringView value = equals < 0 ? QStringView() : what.sliced(equals + 1);
    const auto kind = kinds.constFind((equals < 0 ? what : what.first(equals)).toString());
    if (kind == kinds.constEnd())
        return std::nullopt;

    Fault fault;
    fault.kind = *kind;
    fault.path = at < 0 ? QString() : text.sliced(at + 1).toString();
    fault.target = value.toString();
    bool is_number = true;
    if (fault.kind == Fault::Kind::Slow || fault.kind == Fault::Kind::Status)
        fault.number = value.toInt(&is_number);
    const bool lacks_target = fault.kind == Fault::Kind::Redirect && fault.target.isEmpty();
    return is_number && !lacks_target ? std::optional(fault) : std::nullopt;
}

} // namespace tally::reference
