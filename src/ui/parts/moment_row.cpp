#include "ui/parts/moment_row.h"

#include "ui/parts/day_buttons.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace tally::ui {

void MomentRow::lay_out(const QString &label, QWidget *date, QWidget *time, int spacing)
{
    const QString name = label.section(u' ', 0, 0);
    auto *text = new QLabel(label);
    text->setBuddy(date);
    date->setAccessibleName(QStringLiteral("%1 date (UTC)").arg(name));
    time->setAccessibleName(QStringLiteral("%1 time (UTC)").arg(name));
    const auto [previous, next] = new_day_buttons(name);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    for (QWidget *part : std::initializer_list<QWidget *>{text, previous, date, next, time})
        row->addWidget(part);
    connect(previous, &QPushButton::clicked, this, [this] { Q_EMIT dayStepped(-1); });
    connect(next, &QPushButton::clicked, this, [this] { Q_EMIT dayStepped(1); });
}

} // namespace tally::ui
