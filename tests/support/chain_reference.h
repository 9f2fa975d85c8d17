#pragma once

#include "data/store/chain_records.h"

#include <QSqlDatabase>
#include <QTimeZone>

#include <array>
#include <map>
#include <optional>
#include <vector>

namespace tally::test {

/// The statistics of chains, computed round by round from the stored rows.

struct StoredLoot {
    std::optional<double> item_type;
    std::optional<double> item_subtype;
    std::optional<double> value;
};

struct StoredRound {
    QString file;
    std::optional<double> btype, level, ctid, mtime, start, end, hero_1, hero_2, player;
    int is_fort = 0;
    int is_free = 0;
    std::vector<StoredLoot> loot = {};

    std::optional<double> time() const { return start ? start : mtime; }
    double loot_sum() const;
};

using data::ChainQuestion;

class ChainReference {
public:
    explicit ChainReference(const QSqlDatabase &db);

    data::ChainSummary summary(const ChainQuestion &question) const;
    std::optional<data::BestChain> best_chain(const ChainQuestion &question) const;
    /// Sorted by the items' ids; the facts keep their defaults.
    std::vector<data::LootStat> loot_stats(const ChainQuestion &question) const;
    std::array<int, 24> hourly(const ChainQuestion &question, const QTimeZone &zone) const;
    std::map<std::pair<int, int>, int> hero_pairs(const ChainQuestion &question) const;
    std::map<double, int> chains_of_players() const;
    int honor_since(double since) const;

private:
    std::vector<const StoredRound *> filtered(const ChainQuestion &question) const;
    void add_durations(data::ChainSummary &summary, const ChainQuestion &question) const;

    std::vector<StoredRound> rounds_;
};

} // namespace tally::test
