#include "ui/pinning/window_row_text.h"

namespace tally::ui {

namespace {

QString title_of(const platform::GameWindowInfo &window)
{
    return window.title.isEmpty() ? QStringLiteral("(no title)") : window.title;
}

QString path_of(const platform::GameWindowInfo &window)
{
    return window.exe_path.isEmpty() ? QStringLiteral("(exe path unknown)")
                                     : shown_path(window.exe_path);
}

} // namespace

QString classification_html(const QString &classification)
{
    if (classification == u"native")
        return QStringLiteral("<span style=\"color: #2ecc71;\">(native)</span>");
    if (classification.startsWith(u"sandbox"))
        return QStringLiteral("<span style=\"color: #f39c12;\">(%1)</span>").arg(classification);
    return QStringLiteral("<span style=\"color: #888;\">(unknown)</span>");
}

QString shown_path(const QString &exe_path)
{
    constexpr qsizetype longest_whole = 89;
    constexpr qsizetype kept = 87;
    return exe_path.size() <= longest_whole ? exe_path
                                            : QStringLiteral("...") + exe_path.right(kept);
}

QString window_row_html(const platform::GameWindowInfo &window)
{
    // All at once: a title that holds "%2" must not be taken for a place to fill.
    return QStringLiteral("<b>%1</b> %2<br>"
                          "<span style=\"color: #888; font-size: 9pt; "
                          "font-family: Consolas, monospace;\">%3</span><br>"
                          "<span style=\"color: #666; font-size: 8pt;\">PID: %4</span>")
        .arg(title_of(window).toHtmlEscaped(),
             classification_html(platform::classify_exe_path(window.exe_path)),
             path_of(window).toHtmlEscaped(), QString::number(window.pid));
}

QString window_row_spoken(const platform::GameWindowInfo &window)
{
    return QStringLiteral("%1, %2, %3, PID %4")
        .arg(title_of(window), platform::classify_exe_path(window.exe_path), path_of(window),
             QString::number(window.pid));
}

} // namespace tally::ui
