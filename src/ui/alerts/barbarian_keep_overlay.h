#pragma once

#include <QWidget>

class QLabel;

namespace tally::ui {

/// The banner in the middle of the screen when the keep is ready. It stays until it is clicked.
class BarbarianKeepOverlay : public QWidget {
    Q_OBJECT

public:
    explicit BarbarianKeepOverlay(QWidget *parent = nullptr);

    void show_centered();

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void fit_title(int width);

    QLabel *title_;
    QLabel *body_;
};

/// Where the banner stands on a screen.
QRect banner_place(const QRect &available);

} // namespace tally::ui
