#pragma once

#include "platform/host/game_windows.h"

#include <QFrame>

class QRadioButton;

namespace tally::ui {

/// One window in the selector: a radio button and what is known of the window. A click anywhere on
/// it checks the button.
class GameWindowRow : public QFrame {
    Q_OBJECT

public:
    explicit GameWindowRow(const platform::GameWindowInfo &window, QWidget *parent = nullptr);

    QRadioButton *radio() const { return radio_; }

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    QRadioButton *radio_;
};

} // namespace tally::ui
