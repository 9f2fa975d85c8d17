#include "ui/chains/hero_pair_list.h"

#include "data/master/master_cache.h"
#include "ui/items/hero_pair_icon.h"

#include <QScrollBar>
#include <QShortcut>
#include <QStandardItemModel>

namespace tally::ui {
namespace {

constexpr int chains_role = Qt::UserRole + 1;

QVariant optional_variant(std::optional<double> value)
{
    return value ? QVariant(*value) : QVariant();
}

std::optional<double> optional_number(const QVariant &value)
{
    return value.isValid() ? std::optional(value.toDouble()) : std::nullopt;
}

} // namespace

QString hero_pair_text(const data::HeroPair &pair)
{
    const data::MasterCache &master = data::MasterCache::instance();
    return QStringLiteral("%1 + %2\n%3 chains")
        .arg(master.hero_name(pair.hero_1), master.hero_name(pair.hero_2),
             QString::number(pair.chains));
}

HeroPairList::HeroPairList(QString icon_dir, QWidget *parent)
    : QListWidget(parent), icon_dir_(std::move(icon_dir))
{
    setAccessibleName(QStringLiteral("Hero pairs"));
    setIconSize(QSize(100, 48));
    setWordWrap(true); // two long names are wider than the list
    setResizeMode(QListView::Adjust);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The last one, in the colours of a selection in both themes, keeps it visible under the mouse.
    setStyleSheet(QStringLiteral(
        "QListWidget::item { padding: 4px; }"
        "QListWidget::item:hover { background: rgba(120,150,220,0.15); }"
        "QListWidget::item:selected:hover { background: #5865f2; color: #ffffff; }"));
    offer_copy_and_export(this, QStringLiteral("hero-pairs"),
                          [this](ExportedRows rows) { return table(rows); });
    // `itemActivated` would come with a second click as well.
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        connect(new QShortcut(key, this, nullptr, nullptr, Qt::WidgetShortcut),
                &QShortcut::activated, this, [this] {
                    if (QListWidgetItem *item = currentItem())
                        Q_EMIT itemClicked(item);
                });
    }
}

void HeroPairList::show_pairs(const std::vector<data::HeroPair> &pairs, const ChainFilter &filter)
{
    if (const bool has_new_pictures = pictures_.take_news();
        !has_new_pictures && shows(pairs, filter))
        return;
    pairs_ = pairs;
    filter_ = filter;
    const QListWidgetItem *current = currentItem();
    const auto chosen = current ? choice_of(*current) : std::nullopt;
    const int scrolled = verticalScrollBar()->value();
    clear();
    for (const data::HeroPair &pair : pairs) {
        add_pair(pair, filter);
        if (chosen && pair.hero_1 == chosen->hero_1 && pair.hero_2 == chosen->hero_2)
            setCurrentRow(count() - 1);
    }
    if (pairs.empty()) {
        auto *nothing = new QListWidgetItem(QStringLiteral("(no hero pairs in filter)"), this);
        nothing->setForeground(QColor(Qt::gray));
    }
    doItemsLayout(); // else there is nothing yet to scroll
    verticalScrollBar()->setValue(scrolled);
}

/// Names may have come with reference data.
bool HeroPairList::shows(const std::vector<data::HeroPair> &pairs, const ChainFilter &filter) const
{
    if (pairs != pairs_ || filter != filter_)
        return false;
    for (std::size_t row = 0; row < pairs.size(); ++row) {
        if (item(static_cast<int>(row))->text() != hero_pair_text(pairs[row]))
            return false;
    }
    return true;
}

void HeroPairList::add_pair(const data::HeroPair &pair, const ChainFilter &filter)
{
    constexpr int height = 48;
    constexpr int gap = 4;
    const data::MasterCache &master = data::MasterCache::instance();
    auto *item = new QListWidgetItem(hero_pair_text(pair), this);
    item->setData(Qt::UserRole,
                  QVariantList{pair.hero_1, pair.hero_2, optional_variant(filter.from),
                               optional_variant(filter.to)});
    item->setData(chains_role, pair.chains);
    item->setIcon(render_hero_pair(master.hero(pair.hero_1).icon, master.hero(pair.hero_2).icon,
                                   icon_dir_, height, gap));
}

std::unique_ptr<QAbstractItemModel> HeroPairList::table(ExportedRows rows) const
{
    auto table = std::make_unique<QStandardItemModel>();
    table->setHorizontalHeaderLabels(
        {QStringLiteral("Hero 1"), QStringLiteral("Hero 2"), QStringLiteral("Chains")});
    const data::MasterCache &master = data::MasterCache::instance();
    for (int row = 0; row < count(); ++row) {
        const QListWidgetItem &pair = *item(row);
        const auto choice = choice_of(pair);
        if (!choice || (rows == ExportedRows::Selected && !pair.isSelected()))
            continue;
        auto *chains = new QStandardItem;
        chains->setData(pair.data(chains_role), Qt::DisplayRole);
        table->appendRow({new QStandardItem(master.hero_name(choice->hero_1)),
                          new QStandardItem(master.hero_name(choice->hero_2)), chains});
    }
    return table;
}

std::optional<HeroPairChoice> HeroPairList::choice_of(const QListWidgetItem &item)
{
    const QVariantList data = item.data(Qt::UserRole).toList();
    if (data.size() < 4)
        return std::nullopt;
    return HeroPairChoice{data.at(0).toInt(), data.at(1).toInt(), optional_number(data.at(2)),
                          optional_number(data.at(3))};
}

} // namespace tally::ui
