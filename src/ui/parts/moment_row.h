#pragma once

#include <QWidget>

namespace tally::ui {

/// A label, a day between its two buttons, and a time of that day, all in UTC.
class MomentRow : public QWidget {
    Q_OBJECT

Q_SIGNALS:
    void dayStepped(int days);

protected:
    explicit MomentRow(QWidget *parent) : QWidget(parent) {}
    /// \param label its first word names the controls
    void lay_out(const QString &label, QWidget *date, QWidget *time, int spacing);
};

} // namespace tally::ui
