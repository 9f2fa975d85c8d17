#pragma once

#include <QDate>
#include <QString>
#include <QTime>
#include <QWidget>

class QDateEdit;
class QTimeEdit;

namespace tally::ui {

/// A field for a day (UTC) with a calendar; without a parent.
QDateEdit *new_date_edit(const QString &accessible_name);

/// A label, a day between its two buttons, and a time of that day, all in UTC. A new day sets its
/// time.
class MomentEdit : public QWidget {
    Q_OBJECT

public:
    /// \param label its first word names the controls
    MomentEdit(const QString &label, QTime time_of_new_date, QWidget *parent = nullptr);

    QDate date() const;
    QTime time() const;
    void set(QDate date, QTime time);
    /// As if that day had been entered.
    void shift_date(int days);

Q_SIGNALS:
    void changed(); ///< by the user or by a call
    void dayStepped(int days);

private:
    QDateEdit *date_;
    QTimeEdit *time_;
};

} // namespace tally::ui
