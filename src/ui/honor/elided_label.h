#pragma once

#include <QLabel>

namespace tally::honor {

/// A label of one line, shown as it is, that takes the room it gets: what does not fit is cut off
/// behind "…", and shown when the mouse rests on it.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    bool fits() const;
};

} // namespace tally::honor
