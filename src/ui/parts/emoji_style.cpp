#include "ui/parts/emoji_style.h"

#include "ui/parts/theme.h"

#include <QFontDatabase>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr QChar as_emoji(0xfe0f);

QString emoji_family()
{
    const QStringList installed = QFontDatabase::families();
#ifdef Q_OS_WIN
    // What draws text there cannot draw the pictures that Noto's characters are.
    const QStringList known = {QStringLiteral("Segoe UI Emoji")};
#else
    const QStringList known = {QStringLiteral("Noto Color Emoji"),
                               QStringLiteral("Segoe UI Emoji")};
#endif
    const auto found =
        std::find_if(known.begin(), known.end(),
                     [&installed](const QString &family) { return installed.contains(family); });
    return found == known.end() ? QString() : *found;
}

QList<QTextLayout::FormatRange> emoji_ranges(const QString &text, const QString &family)
{
    QTextCharFormat format;
    format.setFontFamilies({family});
    QList<QTextLayout::FormatRange> ranges;
    for (qsizetype end = text.indexOf(as_emoji); end >= 0; end = text.indexOf(as_emoji, end + 1)) {
        const bool is_pair = end >= 2 && text.at(end - 1).isLowSurrogate();
        const qsizetype start = std::max<qsizetype>(0, end - (is_pair ? 2 : 1));
        ranges.append({static_cast<int>(start), static_cast<int>(end + 1 - start), format});
    }
    return ranges;
}

} // namespace

EmojiStyle::EmojiStyle() : QProxyStyle(base_style()), family_(emoji_family()) {}

void EmojiStyle::drawItemText(QPainter *painter, const QRect &rect, int flags,
                              const QPalette &palette, bool enabled, const QString &text,
                              QPalette::ColorRole text_role) const
{
    if (family_.isEmpty() || !text.contains(as_emoji)) {
        QProxyStyle::drawItemText(painter, rect, flags, palette, enabled, text, text_role);
        return;
    }
    QTextLayout layout(text, painter->font());
    layout.setFormats(emoji_ranges(text, family_));
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    const QSize size(qRound(line.naturalTextWidth()), qRound(line.height()));
    const QRect place = alignedRect(
        painter->layoutDirection(),
        Qt::Alignment(flags) & (Qt::AlignHorizontal_Mask | Qt::AlignVertical_Mask), size, rect);
    painter->save();
    if (text_role != QPalette::NoRole)
        painter->setPen(palette.color(text_role));
    layout.draw(painter, place.topLeft());
    painter->restore();
}

} // namespace tally::ui
