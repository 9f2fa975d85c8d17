#include "ui/keep/barbarian_keep_tab.h"

#include "data/store/tally_db.h"
#include "services/keep_cooldown_service.h"
#include "ui/items/item_row_table.h"
#include "ui/keep/barbarian_keep_details_dialog.h"
#include "ui/parts/message_box.h"
#include "ui/parts/page_view.h"
#include "ui/parts/plain_label.h"
#include "ui/parts/quiet_modal.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tally::ui {

BarbarianKeepTab::BarbarianKeepTab(queries::StoreQueries *queries,
                                   services::KeepCooldownService *service, QString icon_dir,
                                   QWidget *parent)
    : ReportTab(parent), service_(service), icon_dir_(std::move(icon_dir)),
      status_label_(plain_label({})), player_label_(plain_label({})),
      view_(new ItemRowTable({.name = QStringLiteral("Keep kills"),
                              .export_name = QStringLiteral("keep-kills"),
                              .headers = {QStringLiteral("Date (local)"), QStringLiteral("Boss"),
                                          QStringLiteral("Tile"), QStringLiteral("My damage %")},
                              .has_strips = false,
                              .stretching = 1,
                              .selection = QAbstractItemView::SingleSelection},
                             icon_dir_)),
      details_(*queries, this), figures_(*queries, this)
{
    show_band(loading_band());
    view_->setAlternatingRowColors(true);
    auto *refresh_button = new QPushButton(QStringLiteral("↻ Refresh"));
    refresh_button->setAccessibleName(QStringLiteral("Refresh"));
    auto *top = new QHBoxLayout;
    top->addWidget(status_label_, 1);
    top->addWidget(refresh_button);
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(8);
    layout->addLayout(top);
    layout->addWidget(player_label_);
    layout->addWidget(view_, 1);
    show_in_any_size(page, this);

    using Service = services::KeepCooldownService;
    connect(service_, &Service::countdownTick, this, &BarbarianKeepTab::on_countdown);
    connect(view_, &QTableView::activated, this, &BarbarianKeepTab::on_row_activated);
    connect(refresh_button, &QPushButton::clicked, this, [this] {
        service_->tick();
        load_table();
    });
    load_table();
}

void BarbarianKeepTab::refresh()
{
    load_table();
    service_->tick();
}

void BarbarianKeepTab::load_table()
{
    figures_.ask(
        [](const data::TallyDb &db, const queries::IsOutdated &) { return keep_figures(db); },
        [this](const KeepFigures &figures) { show_figures(figures); });
}

void BarbarianKeepTab::show_figures(const KeepFigures &figures)
{
    std::vector<ItemRow> rows;
    rows.reserve(figures.kills.size());
    std::transform(figures.kills.begin(), figures.kills.end(), std::back_inserter(rows),
                   keep_kill_row);
    view_->set_rows(std::move(rows));
    player_label_->setText(
        figures.player_id
            ? keep_player_text(figures.player_name, *figures.player_id, figures.kills.size())
            : QString());
}

void BarbarianKeepTab::on_countdown(double secondsRemaining, bool isReady)
{
    show_band(keep_band(secondsRemaining, isReady));
}

void BarbarianKeepTab::show_band(const KeepBand &band)
{
    status_label_->setText(band.text);
    if (status_label_->styleSheet() != band.style)
        status_label_->setStyleSheet(band.style);
}

void BarbarianKeepTab::on_row_activated(const QModelIndex &index)
{
    const QString file_name = view_->key_of(index);
    if (file_name.isEmpty())
        return;
    details_.ask(
        [file_name](const data::TallyDb &db, const queries::IsOutdated &) {
            return db.trial_detail(file_name);
        },
        [this, had_keyboard = has_keyboard()](const std::optional<data::TrialDetail> &detail) {
            show_details(detail, had_keyboard);
        },
        [this](const QString &failure) {
            show_box(QMessageBox::Warning, QStringLiteral("Error"),
                     QStringLiteral("Failed to load kill details: %1").arg(failure), this);
        });
}

void BarbarianKeepTab::show_details(const std::optional<data::TrialDetail> &detail,
                                    bool had_keyboard)
{
    if (detail)
        open_late(*new BarbarianKeepDetailsDialog(*detail, icon_dir_, this), had_keyboard);
    else
        show_box(QMessageBox::Information, QStringLiteral("No data"),
                 QStringLiteral("Details for this kill are no longer available."), this);
}

} // namespace tally::ui
