#pragma once

#include <QtGlobal>

#include <utility>

namespace tally::ui {

/// For a view that shows the same again: whether the pictures in it may be others by now.
class PictureWatch {
public:
    /// \return whether since the last call one was missing, in any view, or all were forgotten, or
    ///         the screens are others
    bool take_news();

private:
    std::pair<qint64, qreal> seen_{-1, 0.0}; ///< the news, and the sharpness of all screens
};

} // namespace tally::ui
