#include "ui/parts/format_count.h"

namespace tally::ui {

QString format_count(qint64 count)
{
    return QStringLiteral("%L1").arg(count).replace(u',', u' ');
}

} // namespace tally::ui
