#include "ui/honor/honor_panel.h"

#include "ui/honor/elided_label.h"
#include "ui/parts/plain_label.h"

#include <QFrame>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace tally::honor {
namespace {

constexpr int least_width = 280;
constexpr int title_height = 24;
constexpr int caption_width = 80;
constexpr int rank_width = 30;

const QString unknown = QStringLiteral("---");

void set_look(QLabel *label, const QString &look)
{
    if (label->objectName() == look)
        return;
    label->setObjectName(look);
    label->style()->unpolish(label);
    label->style()->polish(label);
}

QLabel *label_of(const QString &look, const QString &text = {})
{
    QLabel *label = ui::plain_label(text);
    label->setObjectName(look);
    return label;
}

/// All labels get the width of the widest, which is at least `least`. Their hints tell no width
/// below the one that they had before.
void align_widths(const QList<QLabel *> &labels, int least)
{
    int width = least;
    for (const QLabel *label : labels)
        width = std::max(width, label->fontMetrics().horizontalAdvance(label->text()) + 2);
    for (QLabel *label : labels)
        label->setFixedWidth(width);
}

QHBoxLayout *row_layout()
{
    auto *row = new QHBoxLayout;
    row->setSpacing(4);
    return row;
}

} // namespace

HonorPanel::HonorPanel(HonorLook look, QWidget *parent) : QWidget(parent), look_(look)
{
    setObjectName(QStringLiteral("panel"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(build_title_bar());
    layout->addWidget(build_body());
    layout->addStretch();
    setStyleSheet(look_.panel());
}

QWidget *HonorPanel::build_title_bar()
{
    title_bar_ = new QFrame;
    title_bar_->setObjectName(QStringLiteral("titlebar"));
    auto *layout = new QHBoxLayout(title_bar_);
    layout->setContentsMargins(8, 0, 4, 0);
    layout->addWidget(ui::plain_label(QStringLiteral("Honor Tracker"),
                                      QStringLiteral("color: white; font-weight: bold;")));
    layout->addStretch();
    auto *close = new QPushButton(QStringLiteral("×"));
    close->setFlat(true);
    close->setFixedSize(20, 20);
    close->setFocusPolicy(Qt::NoFocus); // a key meant for the game must not close it
    close->setStyleSheet(
        QStringLiteral("background: transparent; color: white; font-size: 16pt; padding: 0;"));
    close->setAccessibleName(QStringLiteral("Close"));
    connect(close, &QPushButton::clicked, this, &HonorPanel::closeWanted);
    layout->addWidget(close);
    return title_bar_;
}

QWidget *HonorPanel::build_body()
{
    body_ = new QWidget;
    body_->setObjectName(QStringLiteral("body"));
    auto *layout = new QVBoxLayout(body_);
    layout->setContentsMargins(12, 8, 12, 8);
    layout->setSpacing(6);
    big_label_ = label_of(QStringLiteral("big"), unknown);
    big_label_->setAlignment(Qt::AlignCenter);
    layout->addWidget(big_label_);
    name_label_ = new ElidedLabel;
    name_label_->setObjectName(QStringLiteral("muted"));
    name_label_->setAlignment(Qt::AlignCenter);
    layout->addWidget(name_label_);
    layout->addWidget(line());
    auto *values = new QVBoxLayout;
    values->setSpacing(3);
    baseline_value_ = add_value_row(*values, QStringLiteral("Baseline:"));
    delta_value_ = add_value_row(*values, QStringLiteral("Delta:"));
    read_value_ = add_value_row(*values, QStringLiteral("Read:"));
    rank_value_ = add_value_row(*values, QStringLiteral("Rank:"));
    layout->addLayout(values);
    layout->addWidget(line());
    QLabel *heading = label_of(QStringLiteral("muted"), QStringLiteral("To overtake:"));
    heading->setStyleSheet(look_.heading());
    layout->addWidget(heading);
    for (OvertakeRowLabels &row : overtake_rows_)
        row = add_overtake_row(*layout);
    auto *buttons = new QHBoxLayout;
    auto *sync = new QPushButton(QStringLiteral("Sync"));
    connect(sync, &QPushButton::clicked, this, &HonorPanel::syncWanted);
    buttons->addWidget(sync);
    auto *history = new QPushButton(QStringLiteral("History"));
    connect(history, &QPushButton::clicked, this, &HonorPanel::historyWanted);
    buttons->addWidget(history);
    layout->addLayout(buttons);
    status_label_ = label_of(QStringLiteral("status"), QStringLiteral("Starting..."));
    status_label_->setWordWrap(true);
    layout->addWidget(status_label_);
    return body_;
}

QLabel *HonorPanel::add_value_row(QBoxLayout &rows, const QString &caption)
{
    auto *row = row_layout();
    QLabel *name = label_of(QStringLiteral("muted"), caption);
    captions_ << name;
    row->addWidget(name);
    QLabel *value = label_of(QStringLiteral("value"), unknown);
    value->setAccessibleName(caption);
    row->addWidget(value, 1);
    rows.addLayout(row);
    return value;
}

HonorPanel::OvertakeRowLabels HonorPanel::add_overtake_row(QBoxLayout &body)
{
    auto *row = row_layout();
    OvertakeRowLabels labels{label_of(QStringLiteral("ot_rank"), unknown), new ElidedLabel,
                             label_of(QStringLiteral("gap_far"))};
    labels.name->setObjectName(QStringLiteral("ot_name"));
    labels.gap->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->addWidget(labels.rank);
    row->addWidget(labels.name, 1);
    row->addWidget(labels.gap);
    body.addLayout(row);
    return labels;
}

QFrame *HonorPanel::line() const
{
    auto *line = new QFrame;
    line->setFixedHeight(1);
    line->setStyleSheet(look_.line());
    return line;
}

void HonorPanel::show_text(QLabel *label, const QString &text)
{
    if (label->text() == text)
        return;
    label->setText(text);
    fitting_size_ = {};
}

void HonorPanel::show_styled(QLabel *label, const StyledText &text)
{
    show_text(label, text.text);
    set_look(label, text.look);
}

void HonorPanel::show_figures(const HonorSnapshot &figures, double now)
{
    show_text(big_label_, honor_text(figures.estimated));
    show_text(name_label_, figures.player_name);
    show_text(baseline_value_, honor_text(figures.base_honor));
    show_styled(delta_value_, delta_text(figures.delta_reports));
    show_text(read_value_, read_text(figures.base_ts, now));
    show_text(rank_value_, rank_text(figures.rank));
}

void HonorPanel::show_overtake(const std::array<OvertakeTexts, 3> &rows)
{
    for (std::size_t slot = 0; slot < rows.size(); ++slot) {
        show_text(overtake_rows_[slot].rank, rows[slot].rank);
        show_styled(overtake_rows_[slot].name, rows[slot].name);
        show_styled(overtake_rows_[slot].gap, rows[slot].gap);
    }
}

void HonorPanel::show_status(const QString &text)
{
    show_text(status_label_, text);
}

void HonorPanel::warn(const QString &figure, const QString &name, const QString &style)
{
    show_text(big_label_, figure);
    show_text(name_label_, name);
    big_label_->setStyleSheet(style);
    name_label_->setStyleSheet(style);
}

void HonorPanel::show_admin_required()
{
    warn(QStringLiteral("!"), QStringLiteral("Run program as administrator"), look_.warning());
}

void HonorPanel::show_game_not_found()
{
    warn(unknown, QStringLiteral("Game not running"), look_.absence());
}

void HonorPanel::clear_warning()
{
    if (big_label_->styleSheet().isEmpty())
        return;
    big_label_->setStyleSheet({});
    name_label_->setStyleSheet({});
}

void HonorPanel::set_font_size(int size)
{
    look_.set_font_size(size);
    setStyleSheet(look_.panel());
}

void HonorPanel::changeEvent(QEvent *event)
{
    fitting_size_ = {}; // of another style or font
    QWidget::changeEvent(event);
}

void HonorPanel::fit_columns()
{
    const auto children = findChildren<QLabel *>();
    for (QLabel *label : children)
        label->ensurePolished();
    align_widths(captions_, caption_width);
    QList<QLabel *> ranks;
    for (const OvertakeRowLabels &row : overtake_rows_)
        ranks << row.rank;
    align_widths(ranks, rank_width);
    title_bar_->setFixedHeight(
        std::max(title_height, title_bar_->layout()->minimumSize().height()));
}

QSize HonorPanel::fitting_size()
{
    if (!fitting_size_.isEmpty())
        return fitting_size_;
    fit_columns();
    // Of what has changed within, a layout would hear only when the event loop runs.
    for (QLayout *part : {title_bar_->layout(), body_->layout(), layout()}) {
        part->invalidate();
        part->activate();
    }
    const int width = std::max(least_width, layout()->minimumSize().width());
    fitting_size_ = {width, layout()->totalHeightForWidth(width)};
    return fitting_size_;
}

} // namespace tally::honor
