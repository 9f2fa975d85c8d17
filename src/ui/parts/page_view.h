#pragma once

#include <QScrollArea>

namespace tally::ui {

/// Shows a page in a window of any height: what does not fit is scrolled to. A page never scrolls
/// sideways, for its tables may, and a bar in a bar helps nobody; it is as wide as the view, which
/// cannot be narrower than the page needs.
class PageView : public QScrollArea {
    Q_OBJECT

public:
    /// \param page taken over
    explicit PageView(QWidget *page, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

/// Fills a widget with a page that may be higher than it.
void show_in_any_size(QWidget *page, QWidget *parent);

} // namespace tally::ui
