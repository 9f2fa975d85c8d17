#include "ui/parts/filter_row.h"

#include "ui/parts/flow_layout.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr int spacing = 10;
constexpr int gap = 20;
constexpr int row_spacing = 6;

} // namespace

FilterRow::FilterRow(QWidget *parent) : QWidget(parent), groups_(new QWidget)
{
    new FlowLayout(groups_, 0, spacing + gap, row_spacing);
    auto *refresh = new QPushButton(QStringLiteral("Refresh"));
    refresh->setAccessibleName(refresh->text());
    connect(refresh, &QPushButton::clicked, this, &FilterRow::refreshAsked);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    row->addWidget(groups_, 1);
    row->addWidget(refresh, 0, Qt::AlignTop);
}

void FilterRow::add_group(std::initializer_list<QWidget *> controls)
{
    auto *group = new QWidget;
    auto *row = new QHBoxLayout(group);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    for (QWidget *control : controls)
        row->addWidget(control);
    QLayout *flow = groups_->layout();
    flow->addWidget(group);
    // One height for all, so that what stands in one row is on one line.
    int height = 0;
    for (int i = 0; i < flow->count(); ++i)
        height = std::max(height, flow->itemAt(i)->sizeHint().height());
    for (int i = 0; i < flow->count(); ++i)
        flow->itemAt(i)->widget()->setMinimumHeight(height);
}

QComboBox *FilterRow::add_choice(const QString &name)
{
    auto *label = new QLabel(name);
    auto *combo = new QComboBox;
    combo->setAccessibleName(name.chopped(1));
    label->setBuddy(combo);
    add_group({label, combo});
    return combo;
}

} // namespace tally::ui
