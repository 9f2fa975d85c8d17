#pragma once

#include <QString>

namespace tally::ui {

/// The colours and the type of the statistics overlay, as style sheets.
class OverlayLook {
public:
    enum class Theme { Dark, Light };

    /// \param font_size in points
    OverlayLook(Theme theme, int font_size);

    int font_size() const { return font_size_; }
    void set_font_size(int size) { font_size_ = size; }
    /// The side of an icon, in pixels.
    int icon_side() const;

    QString window() const;
    QString title() const;
    QString filter() const;
    QString section() const;
    QString caption() const; ///< of a compact mode
    /// \param colour may be empty
    QString row_caption(const QString &colour) const;
    QString value() const;
    /// \param side_padding in pixels
    QString close_label(int side_padding) const;
    QString hint() const;

private:
    struct Colours {
        const char *bg;
        const char *border;
        const char *text;
        const char *muted;
        const char *accent;
    };

    Colours colours_;
    int font_size_;
};

} // namespace tally::ui
