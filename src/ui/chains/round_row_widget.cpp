#include "ui/chains/round_row_widget.h"

#include "ui/chains/round_columns.h"
#include "ui/chains/reward_strip.h"

#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr QMargins row_margins(RoundRowWidget::left_margin, 4, 6, 4);

/// All but the rewards.
constexpr int width_of_texts()
{
    using namespace round_columns;
    return row_margins.left() + number + spacing + status + spacing + target + spacing + tag +
           spacing + damage + spacing + row_margins.right();
}

QString tint_colour(RowTint tint)
{
    switch (tint) {
    case RowTint::Fort:
        return QStringLiteral("rgba(88,140,220,0.14)");
    case RowTint::FreeAp:
        return QStringLiteral("rgba(74,154,95,0.12)");
    case RowTint::Plain:
        break;
    }
    return QStringLiteral("rgba(80,80,80,0.08)");
}

/// One line of text in a column. A plain label measures its text at each change, and measuring a
/// colour emoji decodes its picture.
class Cell : public QLabel {
public:
    Cell(int width, Qt::Alignment alignment, const QString &style)
    {
        setTextFormat(Qt::PlainText);
        setFixedWidth(width);
        setAlignment(alignment | Qt::AlignVCenter);
        setStyleSheet(style);
    }

    QSize sizeHint() const override
    {
        ensurePolished();
        return {minimumWidth(), fontMetrics().height()};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }
};

// Setting a sheet again costs as much as the first time.
void show_text(QLabel *label, const StyledText &text)
{
    label->setText(text.text);
    if (label->styleSheet() != text.style)
        label->setStyleSheet(text.style);
}

} // namespace

RoundRowWidget::RoundRowWidget(RowTint tint, QString icon_dir, QWidget *parent)
    : QFrame(parent), tint_(tint), rewards_(new RewardStrip(std::move(icon_dir)))
{
    setFrameShape(QFrame::NoFrame);
    // A style sheet writes the "::" of a class name as "--". It is set before there are children,
    // who would all be styled again.
    setStyleSheet(QStringLiteral("tally--ui--RoundRowWidget { background: %1; }"
                                 "tally--ui--RoundRowWidget:hover "
                                 "{ background: rgba(120,150,220,0.18); }")
                      .arg(tint_colour(tint)));

    auto *columns = new QHBoxLayout(this);
    columns->setContentsMargins(row_margins);
    columns->setSpacing(round_columns::spacing);
    const auto add_cell = [](QBoxLayout *layout, int width, Qt::Alignment alignment,
                             const QString &style) {
        auto *cell = new Cell(width, alignment, style);
        layout->addWidget(cell);
        return cell;
    };
    number_ = add_cell(columns, round_columns::number, Qt::AlignHCenter,
                       QStringLiteral("font-weight: bold;"));
    status_ = add_cell(columns, round_columns::status, Qt::AlignLeft, {});
    target_ = add_cell(columns, round_columns::target, Qt::AlignLeft, {});
    tag_ = add_cell(columns, round_columns::tag, Qt::AlignLeft, {});
    auto *damage = new QVBoxLayout;
    damage->setSpacing(0);
    damage->addStretch();
    columns->addLayout(damage);
    damage_taken_ = add_cell(damage, round_columns::damage, Qt::AlignRight,
                             QStringLiteral("font-family: Consolas, monospace; color: #e74c3c; "
                                            "font-weight: bold;"));
    damage_dealt_ = add_cell(damage, round_columns::damage, Qt::AlignRight,
                             QStringLiteral("font-family: Consolas, monospace; color: #b8bec9;"));
    damage->addStretch();
    columns->addWidget(rewards_, 1);
}

void RoundRowWidget::show_round(const RoundLook &look)
{
    number_->setText(look.number);
    show_text(status_, look.status);
    show_text(target_, look.target);
    show_text(tag_, look.tag);
    damage_taken_->setText(look.damage_taken);
    damage_dealt_->setText(look.damage_dealt);
    rewards_->show_rewards(look.rewards);
    setAccessibleName(spoken_text(look));
    layout()->activate();
}

int RoundRowWidget::height_for(size_t rewards, int width) const
{
    const int texts = damage_taken_->sizeHint().height() + damage_dealt_->sizeHint().height();
    const int tiles = RewardStrip::height_for(rewards, width - width_of_texts());
    return row_margins.top() + std::max(texts, tiles) + row_margins.bottom();
}

int RoundRowWidget::least_width()
{
    constexpr int tiles = 3;
    return width_of_texts() + tiles * (RewardStrip::tile_size + RewardStrip::spacing);
}

} // namespace tally::ui
