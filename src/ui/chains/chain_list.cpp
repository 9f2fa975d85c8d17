#include "ui/chains/chain_list.h"

#include "ui/chains/chain_group_widget.h"
#include "ui/chains/round_row_widget.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr QMargins list_margins(10, 8, 10, 8);
constexpr int list_spacing = 6;

/// Fills all that it covers, so that scrolling moves the picture and paints only what is new.
class OpaqueContent : public QWidget {
public:
    OpaqueContent() { setAttribute(Qt::WA_OpaquePaintEvent); }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter(this).fillRect(event->rect(), palette().window());
    }
};

/// Moves the widgets out of `shown` whose place is not in view any more.
template <typename Shown, typename InView, typename Release>
void release_if_not(InView in_view, Shown &shown, Release release)
{
    std::erase_if(shown, [&](const auto &entry) {
        if (in_view(entry.first))
            return false;
        release(entry.second);
        return true;
    });
}

} // namespace

ChainList::ChainList(RoundOverview overview, QString icon_dir, QWidget *parent)
    : QScrollArea(parent), overview_(std::move(overview)), icon_dir_(std::move(icon_dir)),
      chains_(list_margins.top(), list_spacing, list_margins.bottom())
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setAccessibleName(QStringLiteral("Rounds by chain"));
    setWidget(new OpaqueContent);
    const int width = measure();
    widget()->setMinimumSize(width, chains_.total_height());
}

int ChainList::measure()
{
    auto *group = new ChainGroupWidget(widget());
    spare_groups_.push_back(group);
    group_insets_ = group->insets();
    auto *row = new RoundRowWidget(RowTint::Plain, icon_dir_, widget());
    spare_rows_[RowTint::Plain].push_back(row);

    size_t most_rewards = 0;
    rows_.reserve(overview_.chain_count());
    for (size_t chain = 0; chain < overview_.chain_count(); ++chain) {
        StackGeometry &stack = rows_.emplace_back(group_insets_.top(), ChainGroupWidget::spacing,
                                                  group_insets_.bottom());
        stack.add(group->head_height());
        for (size_t i = 0; i < overview_.row_count(chain); ++i) {
            const size_t rewards = overview_.reward_count(chain, i);
            most_rewards = std::max(most_rewards, rewards);
            stack.add(row->height_for(rewards));
        }
        chains_.add(stack.total_height());
    }
    return list_margins.left() + group_insets_.left() + row->minimum_width_for(most_rewards) +
           group_insets_.right() + list_margins.right();
}

void ChainList::scrollContentsBy(int dx, int dy)
{
    QScrollArea::scrollContentsBy(dx, dy);
    fill_view();
}

void ChainList::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    fill_view();
}

void ChainList::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Home)
        verticalScrollBar()->setValue(verticalScrollBar()->minimum());
    else if (event->key() == Qt::Key_End)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    else
        QScrollArea::keyPressEvent(event);
}

std::vector<ChainList::Row> ChainList::rows_between(int top, int bottom) const
{
    std::vector<Row> rows;
    const auto [first_chain, last_chain] = chains_.between(top, bottom);
    for (size_t chain = first_chain; chain < last_chain; ++chain) {
        const int offset = chains_.top(chain);
        const auto [first, last] = rows_[chain].between(top - offset, bottom - offset);
        for (size_t i = std::max<size_t>(first, 1); i < last; ++i)
            rows.emplace_back(chain, i - 1);
    }
    return rows;
}

void ChainList::fill_view()
{
    const int top = -widget()->y();
    const int bottom = top + viewport()->height();
    const auto [first_chain, last_chain] = chains_.between(top, bottom);
    const std::vector<Row> rows = rows_between(top, bottom);

    release_if_not([first = first_chain,
                    last = last_chain](size_t chain) { return chain >= first && chain < last; },
                   groups_in_view_,
                   [this](ChainGroupWidget *group) { spare_groups_.push_back(group); });
    release_if_not([&rows](const Row &row) { return std::ranges::binary_search(rows, row); },
                   rows_in_view_,
                   [this](RoundRowWidget *row) { spare_rows_[row->tint()].push_back(row); });
    for (size_t chain = first_chain; chain < last_chain; ++chain)
        place_group(chain);
    for (const Row &row : rows)
        place_row(row);
    hide_spares();
}

void ChainList::place_group(size_t chain)
{
    ChainGroupWidget *&group = groups_in_view_[chain];
    if (!group) {
        group = take_group();
        group->show_chain(overview_.chain_head(chain));
    }
    group->setGeometry(list_margins.left(), chains_.top(chain),
                       widget()->width() - list_margins.left() - list_margins.right(),
                       chains_.height(chain));
    group->show();
}

void ChainList::place_row(const Row &row)
{
    RoundRowWidget *&shown = rows_in_view_[row];
    if (!shown) {
        const RoundLook look = overview_.row(row.first, row.second);
        shown = take_row(look.tint);
        shown->show_round(look);
    }
    const QMargins margins =
        list_margins + QMargins(group_insets_.left(), 0, group_insets_.right(), 0);
    const StackGeometry &stack = rows_[row.first];
    shown->setGeometry(margins.left(), chains_.top(row.first) + stack.top(row.second + 1),
                       widget()->width() - margins.left() - margins.right(),
                       stack.height(row.second + 1));
    shown->show();
}

ChainGroupWidget *ChainList::take_group()
{
    if (spare_groups_.empty()) {
        auto *group = new ChainGroupWidget(widget());
        group->lower(); // the rows stand on it
        return group;
    }
    ChainGroupWidget *group = spare_groups_.back();
    spare_groups_.pop_back();
    return group;
}

RoundRowWidget *ChainList::take_row(RowTint tint)
{
    std::vector<RoundRowWidget *> &spare = spare_rows_[tint];
    if (spare.empty())
        return new RoundRowWidget(tint, icon_dir_, widget());
    RoundRowWidget *row = spare.back();
    spare.pop_back();
    return row;
}

void ChainList::hide_spares()
{
    for (ChainGroupWidget *group : spare_groups_)
        group->hide();
    for (const auto &[tint, rows] : spare_rows_) {
        for (RoundRowWidget *row : rows)
            row->hide();
    }
}

} // namespace tally::ui
