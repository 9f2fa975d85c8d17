#pragma once

#include <QWidget>

namespace tally::ui {

/// The headlines of a round's columns. They stand above the rows and move with them from side to
/// side.
class ColumnHeaders : public QWidget {
    Q_OBJECT

public:
    /// \param indent pixels by which the rows' columns stand further in than the headlines' margin
    explicit ColumnHeaders(int indent, QWidget *parent = nullptr);

    /// \param x pixels that the rows are scrolled by
    void scroll_to(int x);

    static constexpr int margin = 16;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void place();

    QWidget *columns_;
    int x_ = 0;
};

} // namespace tally::ui
