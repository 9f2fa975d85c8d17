#include "ui/settings/settings_notes.h"

#include "services/notify_hours.h"

#include <QDir>
#include <QFileInfo>

namespace tally::ui {
namespace {

/// "5, 3 and 1"
QString enumeration(const QList<int> &numbers)
{
    QStringList texts;
    for (const int number : numbers)
        texts << QString::number(number);
    const QString last = texts.takeLast();
    return texts.isEmpty() ? last : QStringLiteral("%1 and %2").arg(texts.join(u", "), last);
}

} // namespace

FolderNote folder_note(const QString &typed, const QString &stored, bool is_there)
{
    const QString folder = typed.trimmed();
    if (folder.isEmpty())
        return {stored.isEmpty() ? QString() : QStringLiteral("Stays: %1").arg(stored), false};
    if (!is_there)
        return {QStringLiteral("This folder does not exist."), true};
    if (QDir::cleanPath(folder) == QDir::cleanPath(stored))
        return {};
    return {QStringLiteral("Watched from the next start on. File → Reimport mailcache... brings "
                           "its mails now."),
            false};
}

QString hours_note(const QString &typed)
{
    const services::NotifyHours understood = services::parse_notify_hours(typed);
    const QString text =
        understood.hours.isEmpty()
            ? QStringLiteral("no warning in advance")
            : QStringLiteral("warns %1 h before").arg(enumeration(understood.hours));
    if (understood.ignored.isEmpty())
        return text;
    return QStringLiteral("%1 (not 1 to 239: %2)")
        .arg(text, understood.ignored.join(QStringLiteral(", ")));
}

QString browse_start(const QString &typed, const QString &default_dir)
{
    const QString folder =
        QDir::cleanPath(typed.trimmed().isEmpty() ? default_dir : typed.trimmed());
    if (QFileInfo(folder).isDir())
        return folder;
    const QString parent = QFileInfo(folder).path();
    return QFileInfo(parent).isDir() ? parent : QString();
}

QString folder_help(const QStringList &candidates)
{
    QStringList lines;
    for (const QString &candidate : candidates) {
        const QString state = QFileInfo(candidate).isDir()
                                  ? QStringLiteral("<span style=\"color: #2ecc71;\">✓ found</span>")
                                  : QStringLiteral("<span style=\"color: #888;\">not found</span>");
        lines << QStringLiteral("&nbsp;&nbsp;• <code>%1</code> — %2")
                     .arg(candidate.toHtmlEscaped(), state);
    }
    return QStringLiteral(
               "<p style=\"color: #888; font-size: 9pt;\">Folder where <em>Rise of Kingdoms</em> "
               "stores battle reports (<code>.mail</code> files). The program auto-detects one of "
               "these known locations on first start:</p><p style=\"font-size: 9pt;\">%1</p><p "
               "style=\"color: #f39c12; font-size: 9pt;\"><b>Note:</b> if you installed the game "
               "in "
               "a custom location, you must set the correct path here manually using the "
               "<b>Browse...</b> button. The folder must end with "
               "<code>\\save\\mailcache</code>.</p>")
        .arg(lines.join(QStringLiteral("<br>")));
}

} // namespace tally::ui
