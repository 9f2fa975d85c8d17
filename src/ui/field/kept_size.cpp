#include "ui/field/kept_size.h"

#include "settings/settings.h"

#include <QRegularExpression>

namespace tally::ui {

QSize kept_size(const Settings &settings, const Setting<QString> &setting, QSize otherwise)
{
    static const QRegularExpression pattern(QStringLiteral("^([1-9]\\d{2,3})x([1-9]\\d{2,3})$"));
    const QRegularExpressionMatch size = pattern.match(settings.get(setting));
    return size.hasMatch() ? QSize(size.captured(1).toInt(), size.captured(2).toInt()) : otherwise;
}

void keep_size(Settings &settings, const Setting<QString> &setting, QSize size)
{
    settings.set(setting, QStringLiteral("%1x%2").arg(size.width()).arg(size.height()));
}

} // namespace tally::ui
