#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/temp_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;

namespace {

constexpr int all_modes[] = {0, 1, 2, 3, 4, -1};

QVariantMap attack(double id, std::initializer_list<std::pair<const char *, QVariant>> values)
{
    QVariantMap map{{u"attack_id"_s, id}, {u"attack_seq"_s, static_cast<int>(id)}};
    for (const auto &[column, value] : values)
        map.insert(QString::fromLatin1(column), value);
    return map;
}

/// Whether the attack is a field fight, a rally or a garrison action, by the game's own numbers.
bool is_of_mode(const QVariantMap &attack, int mode)
{
    const QVariant own = attack.value(u"my_ct"_s);
    const double kind = own.toDouble();
    const bool is_rally = attack.value(u"is_rally"_s).toInt() == 1;
    const bool on_npc = attack.value(u"enemy_npc_btype"_s).toDouble() != 0.0;
    switch (mode) {
    case 0:
        return !own.isNull() && (kind == 1.0 || kind == 6.0) && !is_rally && !on_npc;
    case 1:
        return kind == 1.0 && is_rally;
    case 2:
        return kind > 1.0 && kind != 6.0;
    case 3:
        return attack.value(u"email_box"_s) == u"Archive"_s;
    default:
        return true;
    }
}

struct RandomFights : TempStore {
    explicit RandomFights(unsigned seed)
    {
        std::mt19937 random(seed);
        const auto pick = [&random](std::initializer_list<QVariant> values) {
            return *(values.begin() + static_cast<int>(random() % values.size()));
        };
        const QVariant null;
        for (int mail = 0; mail < 60; ++mail) {
            QVariantList fight;
            for (int id = static_cast<int>(random() % 4); id >= 0; --id) {
                QVariantMap one =
                    attack(id, {{"my_ct", pick({null, 1.0, 2.0, 6.0, 7.0})},
                                {"is_rally", pick({null, 0, 1})},
                                {"enemy_npc_btype", pick({null, 0.0, 1.0})},
                                {"email_box", pick({null, u"Archive"_s, u"Inbox"_s})},
                                {"email_time", pick({null, 100.0, 200.0, 300.5})},
                                {"tour_id", pick({null, 1.0, 2.0})},
                                {"player_id", pick({null, 5.0, 6.0})},
                                {"player_name", pick({null, u"Ada"_s, u"Bob"_s})},
                                {"enemy_id", pick({null, 8.0, 9.0, 10.0})},
                                {"enemy_name", pick({null, u""_s, u"  "_s, u"Eve"_s, u"Dan"_s})},
                                {"is_kvk", pick({null, 0, 1})},
                                {"my_kill_score", pick({null, 0, 5, 3'000'000'000LL})},
                                {"enemy_kill_score", pick({null, 0, 5, 7})},
                                {"my_death", pick({null, 1, 2})},
                                {"enemy_death", pick({null, 3})}});
                one.insert(u"file_name"_s, u"fight %1"_s.arg(mail));
                rows << one;
                fight << one;
            }
            db.insert_field_report(u"fight %1"_s.arg(mail), fight, 1.0);
        }
    }
    QList<QVariantMap> rows;
};

} // namespace

class FieldQueriesOf : public testing::TestWithParam<unsigned> {};

TEST_P(FieldQueriesOf, SummariesAndListsAreWhatTheAttacksAddUpTo)
{
    const RandomFights store(GetParam());
    struct Span {
        std::optional<double> from, to, player;
    };
    for (const Span &span :
         {Span{}, Span{200.0, {}, {}}, Span{{}, 200.0, {}}, Span{100.0, 300.5, 5.0}}) {
        for (const int mode : all_modes) {
            data::FieldSummary sums;
            std::set<QString> files;
            std::set<QString> kvk;
            std::set<double> enemies;
            std::multiset<std::pair<QString, double>> listed;
            for (const QVariantMap &row : store.rows) {
                const auto at = [&row](const char *column) {
                    return row.value(QLatin1StringView(column));
                };
                const QVariant time = at("email_time");
                if (!is_of_mode(row, mode) ||
                    (span.from && (time.isNull() || time.toDouble() < *span.from)) ||
                    (span.to && (time.isNull() || time.toDouble() >= *span.to)) ||
                    (span.player && at("player_id") != *span.player))
                    continue;
                const QString file = at("file_name").toString();
                files.insert(file);
                if (at("is_kvk").toInt() == 1)
                    kvk.insert(file);
                if (!at("enemy_id").isNull())
                    enemies.insert(at("enemy_id").toDouble());
                if (!time.isNull())
                    listed.emplace(file, at("attack_id").toDouble());
                const QVariant own = at("my_kill_score");
                const QVariant other = at("enemy_kill_score");
                ++sums.attacks;
                sums.my_kp += own.toLongLong();
                sums.enemy_kp += other.toLongLong();
                sums.my_deaths += at("my_death").toLongLong();
                sums.enemy_deaths += at("enemy_death").toLongLong();
                sums.wins +=
                    !own.isNull() && !other.isNull() && own.toLongLong() > other.toLongLong();
            }
            sums.fights = static_cast<int>(files.size());
            sums.kvk = static_cast<int>(kvk.size());
            sums.enemies = static_cast<int>(enemies.size());
            if (sums.attacks > 0)
                sums.win_rate = 100.0 * sums.wins / sums.attacks;
            if (sums.enemy_kp > 0)
                sums.kp_ratio =
                    static_cast<double>(sums.my_kp) / static_cast<double>(sums.enemy_kp);
            SCOPED_TRACE(mode);
            EXPECT_EQ(store.db.field_summary(span.from, span.to, span.player, mode), sums);
            std::multiset<std::pair<QString, double>> found;
            for (const QVariant &one :
                 store.db.field_attacks(span.from, span.to, span.player, 1000, mode))
                found.emplace(one.toMap().value(u"file_name"_s).toString(),
                              one.toMap().value(u"attack_id"_s).toDouble());
            EXPECT_EQ(found, listed);
        }
    }
}

TEST_P(FieldQueriesOf, EnemiesAndPlayersAreCountedTheMostFrequentFirst)
{
    const RandomFights store(GetParam());
    std::map<QString, int> enemies;
    std::map<double, std::pair<QString, std::set<QString>>> players;
    for (const QVariantMap &row : store.rows) {
        const QString enemy = row.value(u"enemy_name"_s).toString();
        if (!enemy.trimmed().isEmpty())
            ++enemies[enemy];
        if (row.value(u"player_id"_s).isNull())
            continue;
        auto &[name, files] = players[row.value(u"player_id"_s).toDouble()];
        name = std::max(name, row.value(u"player_name"_s).toString());
        files.insert(row.value(u"file_name"_s).toString());
    }
    std::vector<data::EnemyCount> expected;
    for (const auto &[name, n] : enemies)
        expected.push_back({name, n});
    std::stable_sort(expected.begin(), expected.end(),
                     [](const auto &a, const auto &b) { return a.n > b.n; });
    EXPECT_EQ(store.db.top_enemies(10), expected);
    expected.resize(1);
    EXPECT_EQ(store.db.top_enemies(1), expected);

    const auto accounts = store.db.field_players();
    ASSERT_EQ(accounts.size(), players.size());
    for (const data::PlayerRow &account : accounts) {
        const auto &[name, files] = players.at(*account.player_id);
        EXPECT_EQ(account.name, name);
        EXPECT_EQ(account.n, static_cast<int>(files.size()));
    }
    EXPECT_GE(accounts.front().n, accounts.back().n);
}

INSTANTIATE_TEST_SUITE_P(RandomStores, FieldQueriesOf, testing::Range(1u, 5u));

TEST(FieldQueries, TheListHasTheNewestFirstAndToursTogether)
{
    TempStore store;
    const auto add = [&store](const QString &file, double time, double tour, int seq) {
        QVariantMap one = attack(1, {{"email_time", time}, {"tour_id", tour}});
        one.insert(u"attack_seq"_s, seq);
        store.db.insert_field_report(file, {one}, 1.0);
    };
    add(u"old"_s, 100.0, 9.0, 0);
    add(u"second of tour 2"_s, 200.0, 2.0, 1);
    add(u"tour 1"_s, 200.0, 1.0, 0);
    add(u"first of tour 2"_s, 200.0, 2.0, 0);
    QStringList names;
    for (const QVariant &one : store.db.field_attacks({}, {}, {}, 3, 4))
        names << one.toMap().value(u"file_name"_s).toString();
    EXPECT_EQ(names, (QStringList{u"first of tour 2"_s, u"second of tour 2"_s, u"tour 1"_s}));
}

TEST(FieldQueries, OnlyTheSingleAttackBringsTheHeroesDetails)
{
    TempStore store;
    store.db.insert_field_report(u"fight"_s,
                                 {attack(2, {{"email_time", 100.0}, {"my_heq", u"[1]"_s}}),
                                  attack(1, {{"email_time", 100.0}, {"my_heq", u"[2]"_s}})},
                                 1.0);
    EXPECT_FALSE(store.db.field_attacks({}, {}, {}, 1, 4).at(0).toMap().contains(u"my_heq"_s));
    EXPECT_EQ(store.db.field_attack(u"fight"_s, {})->value(u"my_heq"_s), u"[2]"_s);
    EXPECT_EQ(store.db.field_attack(u"fight"_s, 2.0)->value(u"my_heq"_s), u"[1]"_s);
    EXPECT_EQ(store.db.field_attack(u"fight"_s, 2.0)->size(), 72);
    EXPECT_FALSE(store.db.field_attack(u"fight"_s, 3.0));
    EXPECT_FALSE(store.db.field_attack(u"none"_s, {}));
}

TEST(FieldQueries, AnIndexThatIsGoneOrAnotherCostsSpeedOnly)
{
    TempStore store;
    store.db.insert_field_report(u"fight"_s, {attack(1, {{"email_time", 100.0}})}, 1.0);
    for (const char *change :
         {"DROP INDEX idx_field_time", "CREATE INDEX idx_field_time ON field_reports(my_ct)",
          "DROP INDEX idx_field_accounts"}) {
        PlainConnection(store.path).rows(QString::fromLatin1(change));
        EXPECT_EQ(store.db.field_attacks({}, {}, {}, 10, 4).size(), 1) << change;
        EXPECT_EQ(store.db.field_summary(5.0, {}, {}, 4).attacks, 1) << change;
    }
}
