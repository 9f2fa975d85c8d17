#include "ui/chains/round_row_widget.h"

#include "ui/chains/round_columns.h"
#include "ui/items/item_look.h"
#include "ui/items/item_pictures.h"

#include <QHBoxLayout>
#include <QLabel>

namespace tally::ui {
namespace {

constexpr int tile_size = 48;
constexpr int tile_spacing = 4;
constexpr QMargins row_margins(6, 4, 6, 4);

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
    : QFrame(parent), tint_(tint), icon_dir_(std::move(icon_dir))
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
    rewards_ = new QHBoxLayout;
    rewards_->setSpacing(tile_spacing);
    rewards_->addStretch();
    columns->addLayout(rewards_, 1);
}

void RoundRowWidget::show_round(const RoundLook &look)
{
    number_->setText(look.number);
    show_text(status_, look.status);
    show_text(target_, look.target);
    show_text(tag_, look.tag);
    damage_taken_->setText(look.damage_taken);
    damage_dealt_->setText(look.damage_dealt);
    show_rewards(look.rewards);
    setAccessibleName(spoken_text(look));
    layout()->activate();
}

int RoundRowWidget::height_for(size_t rewards) const
{
    const int tiles = row_margins.top() + tile_size + row_margins.bottom();
    const int texts = row_margins.top() + damage_taken_->sizeHint().height() +
                      damage_dealt_->sizeHint().height() + row_margins.bottom();
    return rewards == 0 ? texts : std::max(texts, tiles);
}

int RoundRowWidget::minimum_width_for(size_t rewards) const
{
    using namespace round_columns;
    constexpr int texts =
        number + spacing + status + spacing + target + spacing + tag + spacing + damage + spacing;
    const int tiles = static_cast<int>(rewards) * (tile_size + tile_spacing) - tile_spacing;
    return row_margins.left() + texts + std::max(tiles, 0) + row_margins.right();
}

void RoundRowWidget::show_rewards(const std::vector<data::LootEntry> &rewards)
{
    for (size_t i = 0; i < rewards.size(); ++i) {
        const data::LootEntry &item = rewards[i];
        const QString quantity = count_text(item.value);
        const ItemTile shown{.icon = item.icon,
                             .unit = item.unit,
                             .name = item.name,
                             .unit_value = item.unit_value,
                             .unit_text = unit_label(item),
                             .quantity_text = quantity,
                             .size = tile_size,
                             .fallback = {}};
        QLabel *label = tile(i);
        label->setPixmap(item_tile(shown, icon_dir_));
        label->setToolTip(reward_tool_tip(item));
        label->setAccessibleName(
            item.name.isEmpty() ? quantity : QStringLiteral("%1, %2").arg(item.name, quantity));
        label->show();
    }
    for (size_t i = rewards.size(); i < tiles_.size(); ++i)
        tiles_[i]->hide();
}

QLabel *RoundRowWidget::tile(size_t index)
{
    while (tiles_.size() <= index) {
        auto *label = new QLabel;
        label->setFixedSize(tile_size, tile_size);
        rewards_->insertWidget(static_cast<int>(tiles_.size()), label);
        tiles_.push_back(label);
    }
    return tiles_[index];
}

} // namespace tally::ui
