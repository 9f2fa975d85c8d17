#include "ui/field/field_fights_tab.h"

#include "data/store/sql_values.h"
#include "data/store/tally_db.h"
#include "ui/field/attack_tree.h"
#include "ui/field/field_cards.h"
#include "ui/field/field_fight_details_window.h"
#include "ui/field/field_filter_bar.h"
#include "ui/field/kept_columns.h"
#include "ui/parts/page_view.h"
#include "ui/parts/quiet_modal.h"
#include "ui/parts/summary_box.h"
#include "ui/parts/utc_time.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tally::ui {
namespace {

constexpr std::chrono::milliseconds counting_sign_after{150};

FieldMode mode_of(int number)
{
    return static_cast<FieldMode>(
        std::clamp(number, 0, static_cast<int>(field_mode_looks.size()) - 1));
}

std::vector<int> first_widths()
{
    std::vector<int> widths;
    std::ranges::transform(tree_columns, std::back_inserter(widths), &TreeColumnLook::width);
    return widths;
}

} // namespace

FieldFightsTab::FieldFightsTab(const Surroundings &around, int mode, QWidget *parent)
    : ReportTab(parent), around_(around), mode_(mode_of(mode)), filter_(new FieldFilterBar),
      summary_(new SummaryBox(field_card_row, nullptr)),
      tree_(new AttackTree(look_of(mode_).export_name)), opened_(around.queries, this),
      figures_(around.queries, this)
{
    constexpr int least_tree_height = 160;
    tree_->setAccessibleName(look_of(mode_).name);
    tree_->setMinimumHeight(least_tree_height);
    new KeptColumns(tree_->header(), around.settings, look_of(mode_).columns, first_widths());
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);
    layout->addWidget(filter_);
    layout->addWidget(summary_);
    layout->addWidget(tree_, 1);
    show_in_any_size(page, this);
    connect_page();
    refresh();
}

void FieldFightsTab::connect_page()
{
    connect(filter_, &FilterBar::choiceChanged, this, &FieldFightsTab::refresh);
    connect(filter_, &FilterBar::refreshAsked, this, &FieldFightsTab::refresh);
    connect(filter_, &FilterBar::clearAsked, this, &FieldFightsTab::on_clear_filter);
    connect(filter_, &FilterBar::dayStepped, this, &FieldFightsTab::shift_date);
    connect(tree_, &QTreeWidget::itemDoubleClicked, this, &FieldFightsTab::on_row_double_click);
    connect(tree_, &AttackTree::attackEntered, this, &FieldFightsTab::on_row_double_click);
    summary_->show_counting_of(figures_, counting_sign_after);
}

void FieldFightsTab::refresh()
{
    const FieldQuestion question = {mode_, filter_->filter(), filter_->player_text(), shown_};
    filter_->set_shown_filter(question.filter);
    figures_.ask(
        [question](const data::TallyDb &db, const queries::IsOutdated &is_outdated) {
            return field_figures(db, question, is_outdated);
        },
        [this](FieldFigures figures) { show_figures(std::move(figures)); });
}

void FieldFightsTab::show_figures(FieldFigures figures)
{
    filter_->set_players(figures.players, figures.chosen_player);
    summary_->set_cards(field_cards(figures.summary));
    if (!figures.attacks)
        return;
    const bool is_same_filter = shown_ && shown_->filter == figures.filter;
    shown_ = std::move(figures.attacks->source);
    tree_->show_attacks(std::move(figures.attacks->attacks), std::move(figures.attacks->rows),
                        is_same_filter ? AttackTree::Place::Kept : AttackTree::Place::Left);
}

void FieldFightsTab::on_clear_filter()
{
    filter_->clear();
    refresh();
}

void FieldFightsTab::shift_date(bool which_from, int delta_days)
{
    filter_->shift_date(which_from, delta_days, utc_date(around_.clock()));
    refresh();
}

void FieldFightsTab::on_row_double_click(QTreeWidgetItem *item, int /*col*/)
{
    const QVariantList attack = item->data(0, Qt::UserRole).toList();
    if (attack.size() < 2)
        return;
    opened_.ask([file_name = attack.at(0).toString(), id = data::number_in(attack.at(1))](
                    const data::TallyDb &db,
                    const queries::IsOutdated &) { return db.field_attack(file_name, id); },
                [this, had_keyboard = has_keyboard()](const std::optional<QVariantMap> &row) {
                    if (row)
                        open_late(*new FieldFightDetailsWindow(*row, around_, window()),
                                  had_keyboard);
                });
}

} // namespace tally::ui
