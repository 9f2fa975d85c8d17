#pragma once

#include <QList>
#include <QWidget>

namespace tally::ui {

/// A small notice at the lower right of the screen that stays until it is clicked, and never takes
/// the keyboard from the game. Several pile up.
class KeepToast : public QWidget {
    Q_OBJECT

public:
    KeepToast(const QString &title, const QString &body, QWidget *parent = nullptr);
    ~KeepToast() override;

    void show_toast();

    /// In front of an alert that covers some of them, or will when they close up: all can be read
    /// and clicked.
    static void raise_all();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    static QList<KeepToast *> &active_toasts(); ///< in the order in which they were shown
    static void stack_again();

    int slot_index_ = -1;
};

} // namespace tally::ui
