#pragma once

#include <QJsonObject>
#include <QString>

namespace tally::ui {

// What the update dialog says.

/// "1023 B", "1.0 KB", "200.0 MB".
QString size_text(qint64 bytes);

/// The offer, as rich text.
/// \param running the version that asks
/// \param forced whether it cannot be postponed any more
QString offer_text(const QJsonObject &record, const QString &running, bool forced);

/// \param total below 1: unknown
QString progress_text(qint64 done, qint64 total);
int progress_percent(qint64 done, qint64 total);

} // namespace tally::ui
