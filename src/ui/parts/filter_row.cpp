#include "ui/parts/filter_row.h"

#include "ui/parts/control_groups.h"
#include "ui/parts/flow_layout.h"

#include <QHBoxLayout>
#include <QPushButton>

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
    add_control_group(*groups_->layout(), controls, spacing);
}

QComboBox *FilterRow::add_choice(const QString &name)
{
    return add_choice_group(*groups_->layout(), name, spacing);
}

} // namespace tally::ui
