#pragma once

#include <QProxyStyle>

namespace tally::ui {

/// Draws a character that asks to be an emoji (by U+FE0F behind it) with the emoji font, even where
/// the font of the text has a plain glyph for it.
class EmojiStyle : public QProxyStyle {
    Q_OBJECT

public:
    EmojiStyle();

    void drawItemText(QPainter *painter, const QRect &rect, int flags, const QPalette &palette,
                      bool enabled, const QString &text,
                      QPalette::ColorRole text_role) const override;

private:
    QString family_; ///< empty without such a font
};

} // namespace tally::ui
