#include "ui/parts/control_groups.h"

#include "ui/parts/plain_label.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

namespace tally::ui {

QHBoxLayout *add_control_group(QLayout &row, std::initializer_list<QWidget *> controls, int spacing)
{
    auto *group = new QWidget;
    auto *layout = new QHBoxLayout(group);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing);
    for (QWidget *control : controls)
        layout->addWidget(control);
    row.addWidget(group);
    level_control_groups(row);
    return layout;
}

QComboBox *add_choice_group(QLayout &row, const QString &label, int spacing)
{
    QLabel *text = plain_label(label);
    auto *combo = new QComboBox;
    combo->setAccessibleName(label.chopped(1));
    text->setBuddy(combo);
    add_control_group(row, {text, combo}, spacing);
    return combo;
}

void level_control_groups(QLayout &row)
{
    int height = 0;
    for (int i = 0; i < row.count(); ++i)
        height = std::max(height, row.itemAt(i)->sizeHint().height());
    for (int i = 0; i < row.count(); ++i)
        row.itemAt(i)->widget()->setMinimumHeight(height);
}

} // namespace tally::ui
