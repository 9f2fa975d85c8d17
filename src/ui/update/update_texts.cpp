#include "ui/update/update_texts.h"

#include "platform/updater/version_record.h"

#include <QStringList>

#include <algorithm>

namespace tally::ui {

using namespace platform;

QString size_text(qint64 bytes)
{
    constexpr qint64 kilobyte = 1024;
    constexpr qint64 megabyte = kilobyte * kilobyte;
    if (bytes < kilobyte)
        return QStringLiteral("%1 B").arg(bytes);
    const auto amount = static_cast<double>(bytes);
    return bytes < megabyte ? QStringLiteral("%1 KB").arg(amount / kilobyte, 0, 'f', 1)
                            : QStringLiteral("%1 MB").arg(amount / megabyte, 0, 'f', 1);
}

QString offer_text(const QJsonObject &record, const QString &running, bool forced)
{
    constexpr qsizetype longest_date = 64;
    const auto text = [&](const char *key) {
        return Updater::record_text(record, QLatin1StringView(key)).left(longest_date);
    };
    QStringList parts = {
        QStringLiteral("<b>Latest:</b> %1").arg(text("version").toHtmlEscaped()),
        QStringLiteral("<b>You have:</b> %1").arg(running.toHtmlEscaped()),
    };
    if (const QString released = text("released"); !released.isEmpty())
        parts << QStringLiteral("<b>Released:</b> %1").arg(released.toHtmlEscaped());
    if (const qint64 size = Updater::update_file(record).size; size >= 1)
        parts << QStringLiteral("<b>Size:</b> %1").arg(size_text(size));
    if (forced)
        parts << QStringLiteral("<span style=\"color: #f39c12;\"><b>You postponed this update 24h "
                                "ago.</b> Please install now to continue using the app.</span>");
    return parts.join(QStringLiteral("<br>"));
}

QString progress_text(qint64 done, qint64 total)
{
    return QStringLiteral("%1 / %2").arg(size_text(done),
                                         total >= 1 ? size_text(total) : QStringLiteral("?"));
}

int progress_percent(qint64 done, qint64 total)
{
    constexpr qint64 whole = 100;
    return total >= 1 ? static_cast<int>(std::clamp(done * whole / total, qint64{0}, whole)) : 0;
}

} // namespace tally::ui
