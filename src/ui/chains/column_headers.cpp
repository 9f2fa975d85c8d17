#include "ui/chains/column_headers.h"

#include "ui/chains/round_columns.h"
#include "ui/parts/plain_label.h"

#include <QHBoxLayout>
#include <QLabel>

namespace tally::ui {
namespace {

QLabel *header_label(const QString &text, const QString &more_style = {})
{
    return plain_label(text, QStringLiteral("font-weight: bold; color: #888; font-size: 9pt; "
                                            "text-transform: uppercase;") +
                                 more_style);
}

} // namespace

ColumnHeaders::ColumnHeaders(int indent, QWidget *parent)
    : QWidget(parent), columns_(new QWidget(this))
{
    columns_->setObjectName(
        QStringLiteral("columnHeaders")); // else the labels get the tint as well
    columns_->setStyleSheet(
        QStringLiteral("#columnHeaders { background: rgba(120,150,220,0.08); }"));
    auto *layout = new QHBoxLayout(columns_);
    layout->setContentsMargins(margin, 6, margin, 6);
    layout->setSpacing(round_columns::spacing);
    layout->addSpacing(indent);
    const auto add = [layout](const QString &text, int width, Qt::Alignment alignment) {
        QLabel *label = header_label(text);
        label->setFixedWidth(width);
        label->setAlignment(alignment | Qt::AlignVCenter);
        layout->addWidget(label);
        return label;
    };
    add(QStringLiteral("Round"), round_columns::number, Qt::AlignHCenter);
    add({}, round_columns::status, Qt::AlignLeft);
    add(QStringLiteral("Target"), round_columns::target, Qt::AlignLeft);
    add({}, round_columns::tag, Qt::AlignLeft);
    add(QStringLiteral("Damage Taken"), round_columns::damage, Qt::AlignRight)
        ->setToolTip(QStringLiteral("Above, in red: damage taken.\nBelow, in grey: damage dealt."));
    layout->addWidget(
        header_label(QStringLiteral("Rewards"), QStringLiteral(" padding-left: 8px;")), 1);
    setFixedHeight(columns_->sizeHint().height());
}

void ColumnHeaders::scroll_to(int x)
{
    x_ = x;
    place();
}

void ColumnHeaders::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    place();
}

void ColumnHeaders::place()
{
    columns_->setGeometry(-x_, 0, width() + x_, height());
}

} // namespace tally::ui
