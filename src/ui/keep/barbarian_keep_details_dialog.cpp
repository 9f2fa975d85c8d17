#include "ui/keep/barbarian_keep_details_dialog.h"

#include "ui/items/item_rows.h"
#include "ui/items/strip_label.h"
#include "ui/keep/keep_texts.h"
#include "ui/parts/plain_label.h"
#include "ui/parts/value_texts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>

#include <utility>

namespace tally::ui {
namespace {

constexpr int name_width = 220;
constexpr int damage_width = 90;
constexpr int tile_size = 56;

QLabel *head_label(const data::TrialDetail &detail)
{
    auto *head = new QLabel(keep_kill_headline(detail));
    head->setTextFormat(Qt::RichText);
    head->setStyleSheet(QStringLiteral("background: rgba(88,101,242,0.85); color: white; padding: "
                                       "12px 20px; font-size: 11pt;"));
    return head;
}

QFrame *new_participant(const data::TrialParticipantRow &participant, const QString &icon_dir)
{
    auto *frame = new QFrame;
    // Labels are frames too; the dot means this class alone.
    frame->setStyleSheet(
        QStringLiteral(".QFrame { background: rgba(80,80,80,0.08); border-radius: 3px; }"
                       ".QFrame:hover { background: rgba(120,150,220,0.12); }"));
    auto *name = plain_label(name_text(participant.player_name),
                             QStringLiteral("font-weight: 600; font-size: 10pt;"));
    name->setFixedWidth(name_width);
    name->setToolTip(
        QStringLiteral("<span>%1</span>").arg(name_text(participant.player_name).toHtmlEscaped()));
    // On a dark ground: on that of the light theme nobody could read the colour.
    const QString percent = QStringLiteral("%1%").arg(participant.damage_rate, 0, 'f', 2);
    auto *damage = new QLabel(
        QStringLiteral("<span style=\"background: #24262e;\">&nbsp;%1&nbsp;</span>").arg(percent));
    damage->setTextFormat(Qt::RichText);
    damage->setAccessibleName(percent);
    damage->setStyleSheet(QStringLiteral("font-family: Consolas, monospace; color: #ffcf40;"));
    damage->setFixedWidth(damage_width);
    damage->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *row = new QHBoxLayout(frame);
    row->setContentsMargins(8, 6, 8, 6);
    row->setSpacing(10);
    row->addWidget(name);
    row->addWidget(damage);
    row->addWidget(new_strip_label(strip_items(participant.loot), icon_dir, tile_size), 1);
    return frame;
}

} // namespace

BarbarianKeepDetailsDialog::BarbarianKeepDetailsDialog(data::TrialDetail detail,
                                                       const QString &icon_dir, QWidget *parent)
    : DetailsDialog(QStringLiteral("Keep Kill — %1").arg(name_text(detail.boss_name)), {820, 540},
                    0, 0, parent),
      detail_(std::move(detail))
{
    add(head_label(detail_));
    add(new_column_header());
    add(new_participants(icon_dir), 1);
}

QWidget *BarbarianKeepDetailsDialog::new_column_header()
{
    auto *header = new QWidget;
    header->setAttribute(Qt::WA_StyledBackground);
    header->setStyleSheet(QStringLiteral(".QWidget { background: rgba(120,150,220,0.08); }"));
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(16, 6, 16, 6);
    row->setSpacing(10);
    const QString style = QStringLiteral("font-weight: bold; color: #888; font-size: 9pt; "
                                         "text-transform: uppercase;");
    QLabel *player = plain_label(QStringLiteral("Player"), style);
    player->setFixedWidth(name_width);
    QLabel *damage = plain_label(QStringLiteral("Damage"), style);
    damage->setFixedWidth(damage_width);
    damage->setAlignment(Qt::AlignRight);
    row->addWidget(player);
    row->addWidget(damage);
    row->addWidget(
        plain_label(QStringLiteral("Loot"), style + QStringLiteral(" padding-left: 8px;")), 1);
    return header;
}

QWidget *BarbarianKeepDetailsDialog::new_participants(const QString &icon_dir) const
{
    auto *rows = new QWidget;
    auto *layout = new QVBoxLayout(rows);
    layout->setContentsMargins(10, 8, 10, 8);
    layout->setSpacing(6);
    for (const data::TrialParticipantRow &participant : detail_.participants)
        layout->addWidget(new_participant(participant, icon_dir));
    layout->addStretch();
    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(rows);
    return area;
}

} // namespace tally::ui
