#include "ui/chains/chain_list.h"

#include "ui/chains/chain_group_widget.h"
#include "ui/chains/round_row_widget.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr QMargins list_margins(10, 8, 10, 8);
constexpr int list_spacing = 6;
constexpr int line_step = 20;     ///< pixels that an arrow key scrolls by
constexpr int beyond_view = 4096; ///< what sticks out of the view by more pixels is cut off
constexpr size_t kept_chains = 200; ///< before and behind those in view, whose rounds stay known

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
    : QAbstractScrollArea(parent), overview_(std::move(overview)), icon_dir_(std::move(icon_dir)),
      chains_(list_margins.top(), list_spacing, list_margins.bottom())
{
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(QStringLiteral("Rounds by chain"));
    // Filled by `paintEvent`, so that scrolling moves the picture and paints only what is new.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    make_models();
    measured_width_ = row_width();
    for (size_t chain = 0; chain < overview_.chain_count(); ++chain)
        chains_.add(measure(chain));
}

void ChainList::make_models()
{
    auto *group = new ChainGroupWidget(viewport());
    spare_groups_.push_back(group);
    group_insets_ = group->insets();
    head_height_ = group->head_height();
    model_row_ = new RoundRowWidget(RowTint::Plain, icon_dir_, viewport());
    model_row_->hide();
}

int ChainList::rows_left() const
{
    return list_margins.left() + group_insets_.left() + RoundRowWidget::left_margin;
}

int ChainList::content_width() const
{
    const int least = list_margins.left() + group_insets_.left() + RoundRowWidget::least_width() +
                      group_insets_.right() + list_margins.right();
    return std::max(viewport()->width(), least);
}

int ChainList::row_width() const
{
    return content_width() - list_margins.left() - group_insets_.left() - group_insets_.right() -
           list_margins.right();
}

qint64 ChainList::measure(size_t chain)
{
    StackGeometry stack(group_insets_.top(), ChainGroupWidget::spacing, group_insets_.bottom());
    stack.add(head_height_);
    if (overview_.knows_rounds(chain)) {
        for (size_t i = 0; i < overview_.row_count(chain); ++i)
            stack.add(model_row_->height_for(overview_.reward_count(chain, i), row_width()));
        rows_.insert_or_assign(chain, stack);
        return stack.total_height();
    }
    const qint64 rows = overview_.head(chain).rounds;
    const auto high = static_cast<qint64>(overview_.rows_with_rewards(chain));
    return stack.total_height() + rows * ChainGroupWidget::spacing +
           high * model_row_->height_for(1, row_width()) +
           (rows - high) * model_row_->height_for(0, row_width());
}

/// What lies in view stays where it is, and so does the end of the list.
void ChainList::set_height(size_t chain, qint64 height)
{
    const qint64 change = height - chains_.height(chain);
    if (change == 0)
        return;
    const bool was_at_end =
        offset_ > 0 && offset_ + viewport()->height() >= chains_.total_height();
    if (was_at_end || chains_.top(chain) < offset_)
        offset_ += change;
    chains_.set_height(chain, height);
}

void ChainList::measure_known()
{
    measured_width_ = row_width();
    for (const auto &[chain, stack] : std::exchange(rows_, {}))
        set_height(chain, measure(chain));
}

void ChainList::show_rounds(size_t first, std::vector<ChainRounds> rounds)
{
    for (size_t i = 0; i < rounds.size(); ++i) {
        const size_t chain = first + i;
        overview_.set_rounds(chain, std::move(rounds[i]));
        set_height(chain, measure(chain));
        // What is shown of them is out of date.
        release_if_not([chain](const Row &row) { return row.first != chain; }, rows_in_view_,
                       [this](RoundRowWidget *row) { spare_rows_[row->tint()].push_back(row); });
    }
    wanted_ = {0, 0};
    const size_t last = first + rounds.size();
    const size_t first_kept = first > kept_chains ? first - kept_chains : 0;
    overview_.forget_rounds_outside(first_kept, last + kept_chains);
    rows_.erase(rows_.begin(), rows_.lower_bound(first_kept));
    rows_.erase(rows_.lower_bound(last + kept_chains), rows_.end());
    update_bars();
    fill_view();
}

void ChainList::update_bars()
{
    const QScopedValueRollback updating(is_updating_bars_, true);
    const int height = viewport()->height();
    scale_ = ScrollScale(chains_.total_height() - height);
    offset_ = std::clamp<qint64>(offset_, 0, std::max<qint64>(chains_.total_height() - height, 0));
    verticalScrollBar()->setPageStep(scale_.steps(height));
    verticalScrollBar()->setSingleStep(scale_.steps(line_step));
    verticalScrollBar()->setRange(0, scale_.maximum());
    verticalScrollBar()->setValue(scale_.value_of(offset_));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(line_step);
    horizontalScrollBar()->setRange(0, content_width() - viewport()->width());
}

void ChainList::scrollContentsBy(int dx, int)
{
    if (is_updating_bars_)
        return;
    const qint64 before = offset_;
    offset_ = scale_.offset_of(verticalScrollBar()->value());
    const qint64 dy = before - offset_;
    if (qAbs(dy) < viewport()->height())
        viewport()->scroll(dx, static_cast<int>(dy));
    else
        viewport()->update();
    fill_view();
}

void ChainList::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    if (row_width() != measured_width_)
        measure_known();
    update_bars();
    fill_view();
}

void ChainList::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    fill_view();
}

void ChainList::paintEvent(QPaintEvent *event)
{
    QPainter(viewport()).fillRect(event->rect(), palette().window());
}

void ChainList::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Home)
        verticalScrollBar()->setValue(verticalScrollBar()->minimum());
    else if (event->key() == Qt::Key_End)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    else
        QAbstractScrollArea::keyPressEvent(event);
}

std::vector<ChainList::Row> ChainList::rows_between(qint64 top, qint64 bottom) const
{
    std::vector<Row> rows;
    const auto [first_chain, last_chain] = chains_.between(top, bottom);
    for (auto known = rows_.lower_bound(first_chain);
         known != rows_.end() && known->first < last_chain; ++known) {
        const auto &[chain, stack] = *known;
        const qint64 offset = chains_.top(chain);
        const auto [first, last] = stack.between(top - offset, bottom - offset);
        for (size_t i = std::max<size_t>(first, 1); i < last; ++i)
            rows.emplace_back(chain, i - 1);
    }
    return rows;
}

void ChainList::fill_view()
{
    const qint64 bottom = offset_ + viewport()->height();
    const auto [first_chain, last_chain] = chains_.between(offset_, bottom);
    const std::vector<Row> rows = rows_between(offset_, bottom);

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
    want_rounds();
}

/// One view ahead and one behind as well, so that scrolling finds them there.
void ChainList::want_rounds()
{
    if (!isVisible())
        return;
    const int height = viewport()->height();
    auto [first, last] = chains_.between(offset_ - height, offset_ + 2 * height);
    while (first < last && overview_.knows_rounds(first))
        ++first;
    while (first < last && overview_.knows_rounds(last - 1))
        --last;
    if (first == last || (first >= wanted_.first && last <= wanted_.second))
        return;
    wanted_ = {first, last};
    Q_EMIT roundsWanted(first, last);
}

void ChainList::place_group(size_t chain)
{
    ChainGroupWidget *&group = groups_in_view_[chain];
    if (!group) {
        group = take_group();
        group->show_chain(overview_.chain_head(chain), chain_date_text(overview_.head(chain)));
    }
    const qint64 top = chains_.top(chain) - offset_;
    const qint64 bottom = std::min<qint64>(top + chains_.height(chain),
                                           viewport()->height() + beyond_view);
    const auto y = static_cast<int>(std::max<qint64>(top, -beyond_view));
    group->setGeometry(list_margins.left() - horizontalScrollBar()->value(), y,
                       content_width() - list_margins.left() - list_margins.right(),
                       static_cast<int>(bottom - y));
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
    const StackGeometry &stack = rows_.at(row.first);
    const qint64 top = chains_.top(row.first) + stack.top(row.second + 1) - offset_;
    shown->setGeometry(list_margins.left() + group_insets_.left() - horizontalScrollBar()->value(),
                       static_cast<int>(top), row_width(),
                       static_cast<int>(stack.height(row.second + 1)));
    shown->show();
}

ChainGroupWidget *ChainList::take_group()
{
    if (spare_groups_.empty()) {
        auto *group = new ChainGroupWidget(viewport());
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
        return new RoundRowWidget(tint, icon_dir_, viewport());
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
