#pragma once

#include <QString>

namespace tally::honor {

/// The colours and sizes of the honor overlay, as style sheets.
class HonorLook {
public:
    /// \param theme 0 is dark, 1 is light
    /// \param font_size in points
    HonorLook(int theme, int font_size) : theme_(theme), font_size_(font_size) {}

    int font_size() const { return font_size_; }
    void set_font_size(int size) { font_size_ = size; }

    /// Of the window itself, without what stands in it, so that dialogs above it keep their own
    /// look.
    QString window() const;
    /// Of all that stands in the window; labels look by their object names.
    QString panel() const;
    QString line() const;
    QString heading() const;
    /// Of a figure and a text that warn.
    QString warning() const;
    QString absence() const;

private:
    struct Colours;
    const Colours &colours() const;

    int theme_;
    int font_size_;
};

} // namespace tally::honor
