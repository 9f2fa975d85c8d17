#include "ui/chains/round_overview_window.h"

#include "data/store/tally_db.h"
#include "ui/chains/chain_list.h"
#include "ui/chains/column_headers.h"
#include "ui/parts/plain_label.h"

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
    QLabel *label = plain_label(
        text, QStringLiteral("background: rgba(88, 101, 242, 0.85); color: white; "
                             "padding: 12px 20px; font-size: 12pt; font-weight: bold;"));
    // Names of any length leave the window its width.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return label;
}

std::optional<data::FortOfChain> fort_of(const data::TallyDb &db, const QString &file_name)
{
    try {
        return db.fort_of_chain(file_name);
    } catch (const std::exception &) {
        return std::nullopt; // logged by the store; the chain can be shown without
    }
}

std::vector<ChainRounds> rounds_of_chains(const data::TallyDb &db,
                                          const std::vector<data::ChainHead> &chains,
                                          const queries::IsOutdated &is_outdated)
{
    std::vector<ChainRounds> rounds;
    for (const data::ChainHead &chain : chains) {
        if (is_outdated())
            break;
        rounds.push_back({db.rounds_of(chain.file_name),
                          chain.has_fort_round ? fort_of(db, chain.file_name) : std::nullopt});
    }
    return rounds;
}

} // namespace

RoundOverviewWindow::RoundOverviewWindow(int, int, const QString &hero_name_1,
                                         const QString &hero_name_2,
                                         std::vector<data::ChainRun> chains,
                                         std::vector<std::optional<data::FortOfChain>> forts,
                                         QString icon_dir, QWidget *parent)
    : QMainWindow(parent)
{
    build(RoundOverview(std::move(chains), std::move(forts)), hero_name_1, hero_name_2,
          std::move(icon_dir));
}

RoundOverviewWindow::RoundOverviewWindow(queries::StoreQueries &queries, const QString &hero_name_1,
                                         const QString &hero_name_2,
                                         std::vector<data::ChainHead> heads, QString icon_dir,
                                         QWidget *parent)
    : QMainWindow(parent), rounds_(std::make_unique<ViewAsker>(queries, this))
{
    build(RoundOverview(std::move(heads)), hero_name_1, hero_name_2, std::move(icon_dir));
    connect(list_, &ChainList::roundsWanted, this, &RoundOverviewWindow::ask_for_rounds);
}

void RoundOverviewWindow::build(RoundOverview overview, const QString &hero_name_1,
                                const QString &hero_name_2, QString icon_dir)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(QStringLiteral("Round Overview — %1 + %2").arg(hero_name_1, hero_name_2));
    resize(default_size);
    if (parentWidget()) {
        const QRect frame = parentWidget()->window()->frameGeometry();
        resize(width(), std::clamp(frame.height() * 85 / 100, 600, 900));
        move(frame.center() - rect().center());
    }

    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(banner(overview.banner(hero_name_1, hero_name_2)));
    list_ = new ChainList(std::move(overview), std::move(icon_dir));
    auto *headers = new ColumnHeaders(list_->rows_left() - ColumnHeaders::margin);
    connect(list_->horizontalScrollBar(), &QScrollBar::valueChanged, headers,
            &ColumnHeaders::scroll_to);
    layout->addWidget(headers);
    layout->addWidget(list_, 1);
    setCentralWidget(content);
    list_->setFocus();
    new QShortcut(QKeySequence::Cancel, this, [this] { close(); });
}

void RoundOverviewWindow::ask_for_rounds(size_t first, size_t last)
{
    std::vector<data::ChainHead> heads;
    for (size_t chain = first; chain < last; ++chain) {
        heads.push_back(list_->overview().head(chain));
    }
    rounds_->ask(
        [heads = std::move(heads)](const data::TallyDb &db,
                                   const queries::IsOutdated &is_outdated) {
            return rounds_of_chains(db, heads, is_outdated);
        },
        [this, first](std::vector<ChainRounds> rounds) {
            list_->show_rounds(first, std::move(rounds));
        });
}

} // namespace tally::ui
