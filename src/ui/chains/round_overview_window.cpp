#include "round_overview_window.h"

#include "chain_list.h"
#include "round_columns.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr QSize default_size(1080, 800);

QLabel *plain_label(const QString &text, const QString &style)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

QWidget *banner(const QString &text)
{
    QLabel *label = plain_label(
        text, QStringLiteral("background: rgba(88, 101, 242, 0.85); color: white; "
                             "padding: 12px 20px; font-size: 12pt; font-weight: bold;"));
    // Names of any length leave the window its width.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return label;
}

QWidget *column_headers()
{
    auto *header = new QWidget;
    header->setObjectName(QStringLiteral("columnHeaders")); // else the labels get it once more
    header->setStyleSheet(QStringLiteral("#columnHeaders { background: rgba(120,150,220,0.08); }"));
    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(16, 6, 16, 6);
    layout->setSpacing(round_columns::spacing);
    const auto add = [layout](const QString &text, int width, Qt::Alignment alignment) {
        QLabel *label = plain_label(text, QStringLiteral("font-weight: bold; color: #888; "
                                                         "font-size: 9pt; "
                                                         "text-transform: uppercase;"));
        label->setFixedWidth(width);
        label->setAlignment(alignment | Qt::AlignVCenter);
        layout->addWidget(label);
    };
    add(QStringLiteral("Round"), round_columns::number, Qt::AlignHCenter);
    add({}, round_columns::status, Qt::AlignLeft);
    add(QStringLiteral("Target"), round_columns::target, Qt::AlignLeft);
    add({}, round_columns::tag, Qt::AlignLeft);
    add(QStringLiteral("Damage Taken"), round_columns::damage, Qt::AlignRight);
    layout->addWidget(plain_label(QStringLiteral("Rewards"),
                                  QStringLiteral("font-weight: bold; color: #888; font-size: 9pt; "
                                                 "text-transform: uppercase; "
                                                 "padding-left: 8px;")),
                      1);
    return header;
}

} // namespace

RoundOverviewWindow::RoundOverviewWindow(int, int, const QString &hero_name_1,
                                         const QString &hero_name_2,
                                         std::vector<data::ChainRun> chains,
                                         std::vector<std::optional<data::FortOfChain>> forts,
                                         QString icon_dir, QWidget *parent)
    : QMainWindow(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(QStringLiteral("Round Overview — %1 + %2").arg(hero_name_1, hero_name_2));
    resize(default_size);
    if (parent) {
        const QRect frame = parent->window()->frameGeometry();
        resize(width(), std::clamp(frame.height() * 85 / 100, 600, 900));
        move(frame.center() - rect().center());
    }

    RoundOverview overview(std::move(chains), std::move(forts));
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(banner(overview.banner(hero_name_1, hero_name_2)));
    QWidget *headers = column_headers();
    layout->addWidget(headers);
    auto *list = new ChainList(std::move(overview), std::move(icon_dir));
    connect(list->horizontalScrollBar(), &QScrollBar::valueChanged, headers,
            [headers](int x) { headers->setContentsMargins(-x, 0, x, 0); });
    layout->addWidget(list, 1);
    setCentralWidget(content);
    list->setFocus();
    new QShortcut(QKeySequence::Cancel, this, [this] { close(); });
}

} // namespace tally::ui
