#include "ui/chains/round_overview_window.h"

#include "ui/chains/chain_list.h"
#include "ui/chains/column_headers.h"

#include <QLabel>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace tally::ui {
namespace {

constexpr QSize default_size(1080, 800);

QWidget *banner(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(QStringLiteral("background: rgba(88, 101, 242, 0.85); color: white; "
                                        "padding: 12px 20px; font-size: 12pt; font-weight: bold;"));
    // Names of any length leave the window its width.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return label;
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
    auto *headers = new ColumnHeaders;
    layout->addWidget(headers);
    auto *list = new ChainList(std::move(overview), std::move(icon_dir));
    connect(list->horizontalScrollBar(), &QScrollBar::valueChanged, headers,
            &ColumnHeaders::scroll_to);
    layout->addWidget(list, 1);
    setCentralWidget(content);
    list->setFocus();
    new QShortcut(QKeySequence::Cancel, this, [this] { close(); });
}

} // namespace tally::ui
