#include "support/random_chains.h"

#include "data/mail/battle_report.h"
#include "data/store/tally_db.h"

#include <random>

namespace tally::test {

namespace {

class Dice {
public:
    explicit Dice(unsigned seed) : random_(seed) {}

    int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    double one_of(std::initializer_list<double> values)
    {
        return *(values.begin() + below(static_cast<int>(values.size())));
    }
    std::optional<double> maybe(std::initializer_list<double> values)
    {
        const int pick = below(static_cast<int>(values.size()) + 1);
        return pick == 0 ? std::nullopt : std::optional(*(values.begin() + pick - 1));
    }

private:
    std::mt19937 random_;
};

data::BattleRound random_round(Dice &dice)
{
    data::BattleRound round;
    round.npc_btype = dice.below(5) == 0 ? dice.maybe({2.0}) : 1.0;
    round.level = dice.maybe({40, 41, 45, 45.5, 46, 50, 51, 55, 56});
    round.npc_ctid = dice.maybe({900, 901, 902, 903, 904, 905});
    round.damage_dealt = dice.maybe({100, 200});
    round.is_fort_round = dice.below(8) == 0 ? 1 : 0;
    for (int items = dice.below(4); items > 0; --items) {
        data::LootEntry item;
        item.item_type = dice.maybe({1, 2});
        item.item_subtype = dice.maybe({10, 11});
        item.value = dice.maybe({-1.0, 0.0, 0.5, 1.0, 3.0});
        round.loot.push_back(item);
    }
    return round;
}

data::BattleReport random_chain(Dice &dice)
{
    data::BattleReport chain;
    chain.chain_start_time = dice.maybe({0.0, 3599.9996, 3600.0, 7200.0, 50'000.25, 1.65e9, 1.7e9});
    if (dice.below(5) != 0)
        chain.chain_end_time = chain.chain_start_time.value_or(100.0) + dice.one_of({10, 20, 60});
    chain.hero_id_1 = dice.maybe({7, 8});
    chain.hero_id_2 = dice.maybe({7, 8});
    chain.player_id = dice.maybe({5001, 5002});
    chain.player_name = chain.player_id ? QStringLiteral("Ada") : QString();
    chain.is_square_rally = dice.below(4) == 0;
    for (int rounds = dice.below(6); rounds > 0; --rounds)
        chain.rounds.push_back(random_round(dice));
    return chain;
}

} // namespace

void add_random_chains(data::TallyDb &db, unsigned seed, int chains)
{
    Dice dice(seed);
    for (int chain = 0; chain < chains; ++chain)
        db.insert_report(QStringLiteral("chain %1").arg(chain), random_chain(dice),
                         dice.one_of({3600.0, 5000.5, 1.65e9}));
    for (const char *column : {"file_mtime", "chain_start_time", "chain_end_time", "hero_id_1",
                               "player_id", "is_free_ap", "is_fort_round"}) {
        QSqlQuery change(db.connection());
        change.exec(QStringLiteral("UPDATE reports SET %1 = %2 WHERE file_name = 'chain %3' "
                                   "AND round_no = %4")
                        .arg(QLatin1StringView(column),
                             dice.below(2) == 0 ? QStringLiteral("NULL") : QStringLiteral("1"))
                        .arg(dice.below(chains))
                        .arg(dice.below(3)));
    }
    QSqlQuery(db.connection())
        .exec(QStringLiteral("INSERT INTO loot (file_name, round_no, item_type, item_subtype, "
                             "value) VALUES ('chain 0', 99, 1, 10, 7)"));
    db.link_fort_to_chains();
}

} // namespace tally::test
