#include "ui/trials/baulur_run_tab.h"

#include "data/store/tally_db.h"
#include "ui/items/item_row_table.h"
#include "ui/parts/page_view.h"
#include "ui/parts/plain_label.h"
#include "ui/trials/baulur_kills_dialog.h"
#include "ui/trials/loot_cards.h"
#include "ui/trials/trial_filter_row.h"
#include "ui/trials/trial_texts.h"

#include <QItemSelectionModel>
#include <QLabel>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tally::ui {
namespace {

template <typename Record>
std::vector<ItemRow> rows_of(const std::vector<Record> &records, ItemRow (*row)(const Record &))
{
    std::vector<ItemRow> rows;
    rows.reserve(records.size());
    std::transform(records.begin(), records.end(), std::back_inserter(rows), row);
    return rows;
}

const QString no_session_caption = QStringLiteral("Players in selected session:");

} // namespace

BaulurRunTab::BaulurRunTab(queries::StoreQueries *queries, QString icon_dir, QWidget *parent,
                           platform::Clock clock)
    : ReportTab(parent), queries_(queries), icon_dir_(std::move(icon_dir)),
      filter_(new TrialFilterRow(std::move(clock))), loot_cards_(new LootCards(icon_dir_)),
      sessions_label_(plain_label(QStringLiteral("Sessions:"))),
      sessions_view_(new ItemRowTable(
          {.name = QStringLiteral("Sessions"),
           .export_name = QStringLiteral("boss-run-sessions"),
           .headers = {QStringLiteral("Time"), QStringLiteral("Bosses"), QStringLiteral("Kills")},
           .has_strips = false,
           .stretching = 1,
           .selection = QAbstractItemView::SingleSelection},
          icon_dir_)),
      players_label_(plain_label(no_session_caption)),
      players_view_(new ItemRowTable(
          {.name = QStringLiteral("Players"),
           .export_name = QStringLiteral("boss-run-players"),
           .headers = {QStringLiteral("Player"), QStringLiteral("Kills"), QStringLiteral("Loot")},
           .selection = QAbstractItemView::SingleSelection},
          icon_dir_)),
      session_figures_(*queries, this), figures_(*queries, this)
{
    show_in_any_size(new_page(), this);
    connect(filter_, &TrialFilterRow::refreshAsked, this, &BaulurRunTab::refresh);
    connect(filter_, &TrialFilterRow::playerChosen, this, &BaulurRunTab::refresh);
    connect(filter_, &TrialFilterRow::newDay, this, &BaulurRunTab::refresh);
    connect(sessions_view_, &QTableView::clicked, this, &BaulurRunTab::on_session_row_activated);
    // By the keyboard.
    connect(sessions_view_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &row) {
                if (!placing_)
                    on_session_row_activated(row);
            });
    connect(players_view_, &ItemRowTable::rowOpened, this, &BaulurRunTab::on_player_row_activated);
    refresh();
}

QWidget *BaulurRunTab::new_page()
{
    sessions_view_->setMinimumHeight(160);
    players_view_->setMinimumHeight(240);
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);
    layout->addWidget(filter_);
    layout->addWidget(plain_label(QStringLiteral("Total loot from filtered sessions:")));
    layout->addWidget(loot_cards_);
    layout->addWidget(sessions_label_);
    layout->addWidget(sessions_view_, 1);
    layout->addWidget(players_label_);
    layout->addWidget(players_view_, 2);
    return page;
}

void BaulurRunTab::refresh()
{
    TrialQuestion question = filter_->question();
    question.session_files = selected_session_.file_names;
    figures_.ask(
        [question](const data::TallyDb &db, const queries::IsOutdated &is_outdated) {
            return trial_figures(db, question, is_outdated);
        },
        [this](const TrialFigures &figures) { show_figures(figures); });
}

void BaulurRunTab::show_figures(const TrialFigures &figures)
{
    // Where they could not be read, nobody can be chosen, and the loot is that of all.
    filter_->set_players(figures.players.value_or(std::vector<data::TrialPlayerRow>()));
    if (figures.loot)
        loot_cards_->show_stats(*figures.loot);
    if (!figures.sessions)
        return;
    show_sessions(*figures.sessions);
    if (sessions_.empty()) {
        show_no_session();
        return;
    }
    // The user may have chosen another one while this was being counted.
    const data::TrialSession *chosen = session_with(sessions_, selected_session_.file_names);
    if (!figures.selected)
        return ask_for_session(chosen ? *chosen : sessions_.front());
    if (chosen && *chosen != figures.selected->session)
        return ask_for_session(*chosen);
    show_session(*figures.selected);
}

void BaulurRunTab::show_sessions(const std::vector<data::TrialSession> &sessions)
{
    const QScopedValueRollback placing(placing_, true);
    sessions_ = sessions;
    sessions_view_->set_rows(rows_of(sessions_, session_row));
    sessions_label_->setText(QStringLiteral("Sessions (%1):").arg(sessions_.size()));
}

void BaulurRunTab::show_session(const SessionFigures &figures)
{
    const QScopedValueRollback placing(placing_, true);
    selected_session_ = figures.session;
    const QString key = session_row(selected_session_).key;
    if (sessions_view_->key_of(sessions_view_->currentIndex()) != key)
        sessions_view_->select_key(key);
    players_view_->set_rows(rows_of(figures.players, player_row));
    players_label_->setText(players_caption(selected_session_, figures.players.size()));
}

void BaulurRunTab::show_no_session()
{
    selected_session_ = {};
    players_view_->set_rows({});
    players_label_->setText(no_session_caption);
}

void BaulurRunTab::ask_for_session(const data::TrialSession &session)
{
    session_figures_.ask(
        [session](const data::TallyDb &db, const queries::IsOutdated &) {
            return SessionFigures{session, db.session_players(session.file_names)};
        },
        [this](const SessionFigures &figures) {
            // A refresh may have come in between.
            if (session_with(sessions_, figures.session.file_names))
                show_session(figures);
        });
}

void BaulurRunTab::on_session_row_activated(const QModelIndex &index)
{
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= sessions_.size())
        return;
    selected_session_ = sessions_[row];
    ask_for_session(selected_session_);
}

void BaulurRunTab::on_player_row_activated(const QModelIndex &index)
{
    const QString player = players_view_->key_of(index);
    if (!index.isValid() || selected_session_.file_names.isEmpty())
        return;
    auto *dialog =
        new BaulurKillsDialog(queries_, selected_session_.file_names, player, icon_dir_, this);
    dialog->open();
}

} // namespace tally::ui
