#pragma once

#include "data/store/chain_records.h"
#include "ui/chains/chain_filter.h"
#include "ui/items/picture_watch.h"
#include "ui/parts/table_export.h"

#include <QListWidget>
#include <QString>

#include <optional>
#include <vector>

namespace tally::ui {

/// A pair of heroes and the period that it was counted in.
struct HeroPairChoice {
    int hero_1 = 0;
    int hero_2 = 0;
    std::optional<double> from;
    std::optional<double> to;
};

/// The pair by name and the number of its chains, in two lines.
QString hero_pair_text(const data::HeroPair &pair);

/// The pairs that fought chains. A click or Enter is `itemClicked`.
class HeroPairList : public QListWidget {
    Q_OBJECT

public:
    HeroPairList(QString icon_dir, QWidget *parent);

    /// Keeps the current pair and the place that is looked at; touches nothing if it shows them.
    void show_pairs(const std::vector<data::HeroPair> &pairs, const ChainFilter &filter);
    /// Nothing for an item that is no pair.
    static std::optional<HeroPairChoice> choice_of(const QListWidgetItem &item);

private:
    /// A row a pair: both heroes and the number of their chains.
    std::unique_ptr<QAbstractItemModel> table(ExportedRows rows) const;
    void add_pair(const data::HeroPair &pair, const ChainFilter &filter);
    bool shows(const std::vector<data::HeroPair> &pairs, const ChainFilter &filter) const;

    QString icon_dir_;
    std::vector<data::HeroPair> pairs_;
    std::optional<ChainFilter> filter_; ///< that they were counted with
    PictureWatch pictures_;
};

} // namespace tally::ui
