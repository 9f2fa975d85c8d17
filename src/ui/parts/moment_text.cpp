#include "ui/parts/moment_text.h"

#include "ui/parts/sheet_property.h"

#include <QLineEdit>

namespace tally::ui {

MomentText::MomentText(const QString &label, const QString &time_of_new_date, QWidget *parent)
    : MomentRow(parent), time_of_new_date_(time_of_new_date), date_(new QLineEdit),
      time_(new QLineEdit(time_of_new_date))
{
    constexpr int date_width = 110;
    constexpr int time_width = 60;
    constexpr int spacing = 4;
    date_->setPlaceholderText(QStringLiteral("yyyy-mm-dd"));
    date_->setFixedWidth(date_width);
    time_->setPlaceholderText(QStringLiteral("HH:MM"));
    time_->setFixedWidth(time_width);
    lay_out(label, date_, time_, spacing);

    connect(date_, &QLineEdit::textChanged, this, [this] {
        time_->setText(time_of_new_date_);
        Q_EMIT changed();
    });
    connect(time_, &QLineEdit::textChanged, this, &MomentText::changed);
    for (const QLineEdit *edit : {date_, time_})
        connect(edit, &QLineEdit::returnPressed, this, &MomentText::accepted);
}

MomentTexts MomentText::texts() const
{
    return {date_->text(), time_->text()};
}

void MomentText::set_date(const QString &date)
{
    date_->setText(date);
}

void MomentText::clear()
{
    date_->clear();
    time_->setText(time_of_new_date_);
}

void MomentText::mark_unreadable(bool unreadable)
{
    for (QLineEdit *edit : {date_, time_}) {
        set_sheet_property(*edit, "unreadable", unreadable);
        edit->setAccessibleDescription(unreadable ? QStringLiteral("No moment: no limit.")
                                                  : QString());
    }
}

} // namespace tally::ui
