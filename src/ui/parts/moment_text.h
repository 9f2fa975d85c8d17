#pragma once

#include "ui/parts/moment_row.h"

#include <QString>

class QLineEdit;

namespace tally::ui {

/// A day and a time of it as they were typed. They may be anything.
struct MomentTexts {
    QString date;
    QString time;
};

/// A moment as free text, which may also be left empty. A new day sets its time.
class MomentText : public MomentRow {
    Q_OBJECT

public:
    MomentText(const QString &label, const QString &time_of_new_date, QWidget *parent = nullptr);

    MomentTexts texts() const;
    void set_date(const QString &date);
    /// No date, and the time of a new one.
    void clear();
    /// Shows quietly whether the text counts as a moment.
    void mark_unreadable(bool unreadable);

Q_SIGNALS:
    void changed();  ///< by the user or by a call
    void accepted(); ///< by the Enter key

private:
    QString time_of_new_date_;
    QLineEdit *date_;
    QLineEdit *time_;
};

} // namespace tally::ui
