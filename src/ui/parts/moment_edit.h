#pragma once

#include "ui/parts/moment_row.h"

#include <QDate>
#include <QString>
#include <QTime>

class QDateEdit;
class QTimeEdit;

namespace tally::ui {

/// A field for a day (UTC) with a calendar; without a parent.
QDateEdit *new_date_edit(const QString &accessible_name);

/// A moment that is always one. A new day sets its time.
class MomentEdit : public MomentRow {
    Q_OBJECT

public:
    MomentEdit(const QString &label, QTime time_of_new_date, QWidget *parent = nullptr);

    QDate date() const;
    QTime time() const;
    void set(QDate date, QTime time);
    /// As if that day had been entered.
    void shift_date(int days);

Q_SIGNALS:
    void changed(); ///< by the user or by a call

private:
    QDateEdit *date_;
    QTimeEdit *time_;
};

} // namespace tally::ui
