#include "ui/honor/honor_look.h"

#include <algorithm>

namespace tally::honor {

struct HonorLook::Colours {
    const char *bg;
    const char *border;
    const char *text;
    const char *big;
    const char *muted;
    const char *accent;
    const char *positive;
    const char *negative;
};

const HonorLook::Colours &HonorLook::colours() const
{
    static constexpr Colours light{"#f5f5f7", "#5865f2", "#2b2f3a", "#c67c00",
                                   "#5a5f6b", "#3d47c4", "#2e7d32", "#c62828"};
    static constexpr Colours dark{"#1e1e2e", "#5865f2", "#e8eaed", "#ffd580",
                                  "#8892a5", "#5865f2", "#7bc47f", "#f28b82"};
    return theme_ == 1 ? light : dark;
}

QString HonorLook::window() const
{
    // A style sheet writes the "::" of a class's full name as "--".
    return QStringLiteral(
               "tally--honor--HonorSummaryOverlay { background: %1; border: 1px solid %2; }")
        .arg(QLatin1StringView(colours().bg), QLatin1StringView(colours().border));
}

QString HonorLook::panel() const
{
    const QString text = QLatin1StringView(colours().text);
    const QString big = QLatin1StringView(colours().big);
    const QString muted = QLatin1StringView(colours().muted);
    const QString accent = QLatin1StringView(colours().accent);
    const QString positive = QLatin1StringView(colours().positive);
    const QString negative = QLatin1StringView(colours().negative);
    const struct {
        const char *selector;
        int size;
        QString colour;
        const char *more;
    } labels[] = {
        {"QLabel", font_size_, text, ""},
        {"QLabel#big", font_size_ * 12 / 5, big, "font-weight: bold; "},
        {"QLabel#value", font_size_, text, ""},
        {"QLabel#muted", std::max(font_size_ - 1, 7), muted, ""},
        {"QLabel#status", std::max(font_size_ - 2, 6), muted, "font-style: italic; "},
        {"QLabel#delta_pos", font_size_, positive, "font-weight: bold; "},
        {"QLabel#delta_neg", font_size_, negative, "font-weight: bold; "},
        {"QLabel#gap_ok", std::max(font_size_ - 1, 7), positive, "font-weight: bold; "},
        {"QLabel#gap_near", std::max(font_size_ - 1, 7), big, ""},
        {"QLabel#gap_far", std::max(font_size_ - 1, 7), muted, ""},
        {"QLabel#ot_rank", std::max(font_size_ - 1, 7), muted, ""},
        {"QLabel#ot_name", std::max(font_size_ - 1, 7), text, ""},
        {"QLabel#ot_name_missing", std::max(font_size_ - 1, 7), muted, "font-style: italic; "},
    };
    // The application's sheet, whose theme may be another one by now, must not fill what lies
    // within.
    QString sheet = QStringLiteral("#panel, #body { background: transparent; }");
    for (const auto &[selector, size, colour, more] : labels)
        sheet += QStringLiteral("%1 { color: %2; font-size: %3pt; %4}")
                     .arg(QLatin1StringView(selector), colour)
                     .arg(size)
                     .arg(QLatin1StringView(more));
    sheet += QStringLiteral("QPushButton { background: %1; color: white; border: none; "
                            "padding: 4px 12px; border-radius: 4px; font-size: %2pt; }"
                            "QPushButton:hover { background: #6a75f5; }"
                            "QPushButton:focus { border: 1px solid %3; padding: 3px 11px; }"
                            "QFrame#titlebar { background: %1; }")
                 .arg(accent)
                 .arg(font_size_)
                 .arg(text);
    return sheet;
}

QString HonorLook::line() const
{
    return QStringLiteral("background: %1;").arg(QLatin1StringView(colours().border));
}

QString HonorLook::heading() const
{
    return QStringLiteral("color: %1; font-weight: bold; font-size: 9pt;")
        .arg(QLatin1StringView(colours().muted));
}

QString HonorLook::warning() const
{
    return QStringLiteral("color: %1;").arg(QLatin1StringView(colours().negative));
}

QString HonorLook::absence() const
{
    return QStringLiteral("color: %1;").arg(QLatin1StringView(colours().muted));
}

} // namespace tally::honor
