#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/store_dump.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// An empty file, or one that an earlier build left.
struct OldStore {
    explicit OldStore(const QStringList &statements = {})
    {
        for (const QString &statement : statements)
            plain.rows(statement);
    }
    /// "name type" of every column, in order.
    QString columns(const QString &table) const
    {
        return plain.text(u"SELECT name || ' ' || type FROM pragma_table_info('%1')"_s.arg(table));
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"tally.db"_s);
    PlainConnection plain{path};
    data::TallyDb db{path};
};

QString lines(QString list)
{
    return list.replace(u", "_s, u"\n"_s);
}

const auto battle_columns =
    u"file_name TEXT, round_no INTEGER, npc_btype REAL, npc_type REAL, level REAL, result REAL, "
    "report_time REAL, file_mtime REAL, imported_at REAL, chain_start_time REAL, "
    "chain_end_time REAL, hero_id_1 REAL, hero_id_2 REAL, npc_ctid REAL, disappear_tick REAL, "
    "damage_taken REAL, damage_dealt REAL, player_id REAL, player_name TEXT, alliance_name TEXT, "
    "ets REAL, is_free_ap INTEGER, is_fort_round INTEGER"_s;

const auto field_columns =
    u"file_name TEXT, attack_id REAL, attack_seq INTEGER, file_mtime REAL, imported_at "
    "REAL, email_time REAL, end_date REAL, email_id REAL, email_box TEXT, email_type "
    "TEXT, email_role TEXT, email_receiver TEXT, tour_id REAL, n_attacks INTEGER, is_kvk "
    "INTEGER, is_rally INTEGER, my_ct REAL, enemy_ct REAL, enemy_npc_type REAL, "
    "enemy_npc_btype REAL, player_id REAL, player_name TEXT, alliance_name TEXT, my_hid "
    "REAL, my_hid2 REAL, enemy_id REAL, enemy_name TEXT, enemy_alliance TEXT, enemy_hid "
    "REAL, enemy_hid2 REAL, my_kill_score INTEGER, enemy_kill_score INTEGER, my_death "
    "INTEGER, enemy_death INTEGER, my_power INTEGER, enemy_power INTEGER, my_bad_hurt "
    "INTEGER, enemy_bad_hurt INTEGER, my_hurt INTEGER, enemy_hurt INTEGER, my_hlv REAL, "
    "my_hlv2 REAL, my_hst REAL, my_hst2 REAL, my_haw INTEGER, my_haw2 INTEGER, my_cosid "
    "REAL, my_formation REAL, my_hss TEXT, my_hss2 TEXT, my_heq TEXT, my_heq2 TEXT, "
    "my_hwbs TEXT, my_hwbs2 TEXT, my_inscriptions TEXT, my_inscriptions2 TEXT, enemy_hlv "
    "REAL, enemy_hlv2 REAL, enemy_hst REAL, enemy_hst2 REAL, enemy_haw INTEGER, "
    "enemy_haw2 INTEGER, enemy_cosid REAL, enemy_formation REAL, enemy_hss TEXT, "
    "enemy_hss2 TEXT, enemy_heq TEXT, enemy_heq2 TEXT, enemy_hwbs TEXT, enemy_hwbs2 TEXT, "
    "enemy_inscriptions TEXT, enemy_inscriptions2 TEXT"_s;

const QString old_reports =
    u"CREATE TABLE reports (file_name TEXT NOT NULL, round_no INTEGER NOT NULL DEFAULT 0, "
    "npc_btype REAL, npc_type REAL, level REAL, result REAL, report_time REAL, file_mtime REAL, "
    "imported_at REAL, PRIMARY KEY (file_name, round_no))"_s;
const QString old_loot =
    u"CREATE TABLE loot (id INTEGER PRIMARY KEY AUTOINCREMENT, file_name TEXT NOT NULL, "
    "item_type REAL, item_subtype REAL, value REAL)"_s;
const QString old_settings = u"CREATE TABLE settings (key TEXT PRIMARY KEY, value TEXT)"_s;
const QString migration_mark = u"INSERT INTO settings VALUES ('npc_migration_v4_done', '1')"_s;

} // namespace

struct TableShape {
    QString table;
    QString columns;
};
void PrintTo(const TableShape &shape, std::ostream *out)
{
    *out << shape.table.toStdString();
}

class StoreSchemaOf : public testing::TestWithParam<TableShape> {};

TEST_P(StoreSchemaOf, ANewFileHasTheColumnsInTheirOrder)
{
    OldStore store;
    EXPECT_FALSE(store.db.init_schema());
    EXPECT_EQ(store.columns(GetParam().table), lines(GetParam().columns));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, StoreSchemaOf,
    testing::Values(
        TableShape{u"reports"_s, battle_columns}, TableShape{u"field_reports"_s, field_columns},
        TableShape{u"loot"_s, u"id INTEGER, file_name TEXT, round_no INTEGER, item_type REAL, "
                              "item_subtype REAL, value REAL"_s},
        TableShape{u"settings"_s, u"key TEXT, value TEXT"_s},
        TableShape{u"honor_summary_log"_s,
                   u"log_time REAL, base_timestamp REAL, base_honor INTEGER, new_timestamp REAL, "
                   "new_honor INTEGER, delta_reports INTEGER, estimated INTEGER, "
                   "discrepancy INTEGER"_s},
        TableShape{u"trial_reports"_s,
                   u"file_name TEXT, mail_id TEXT, boss_name TEXT, npc_type REAL, npc_level REAL, "
                   "tile_x INTEGER, tile_y INTEGER, event_time REAL, file_mtime REAL"_s},
        TableShape{u"trial_participants"_s,
                   u"id INTEGER, file_name TEXT, player_id REAL, player_name TEXT, "
                   "damage_rate REAL, order_ INTEGER"_s},
        TableShape{u"trial_loot"_s, u"id INTEGER, participant_id INTEGER, item_type INTEGER, "
                                    "item_subtype INTEGER, value INTEGER"_s},
        TableShape{u"fort_reports"_s,
                   u"file_name TEXT, mail_id TEXT, fort_level INTEGER, tile_x INTEGER, "
                   "tile_y INTEGER, damage_percent INTEGER, event_time REAL, file_mtime REAL, "
                   "battle_file_name TEXT"_s},
        TableShape{u"fort_loot"_s, u"id INTEGER, file_name TEXT, item_type INTEGER, "
                                   "item_subtype INTEGER, value INTEGER"_s}));

TEST(StoreSchema, ANewFileHasAllIndexes)
{
    TempStore store;
    const PlainConnection plain(store.path);
    EXPECT_EQ(plain.text(u"SELECT m.name, m.tbl_name, group_concat(COALESCE(i.name, '<expr>')) "
                         "FROM sqlite_master m JOIN pragma_index_info(m.name) i "
                         "WHERE m.type = 'index' AND m.sql IS NOT NULL "
                         "GROUP BY m.name ORDER BY m.name"_s),
              u"idx_field_box|field_reports|email_box\n"
              "idx_field_email|field_reports|email_id\n"
              "idx_field_enemy|field_reports|enemy_id\n"
              "idx_field_file|field_reports|file_name\n"
              "idx_field_npc|field_reports|enemy_npc_btype\n"
              "idx_field_player|field_reports|player_id\n"
              "idx_field_time|field_reports|email_time\n"
              "idx_field_tour|field_reports|tour_id\n"
              "idx_fort_battle|fort_reports|battle_file_name\n"
              "idx_fort_level|fort_reports|fort_level\n"
              "idx_fort_loot_file|fort_loot|file_name\n"
              "idx_fort_time|fort_reports|event_time\n"
              "idx_honor_log_time|honor_summary_log|log_time\n"
              "idx_loot_file|loot|file_name,round_no\n"
              "idx_loot_item|loot|item_type,item_subtype\n"
              "idx_reports_btype|reports|npc_btype\n"
              "idx_reports_chain_time|reports|<expr>\n"
              "idx_reports_ctid|reports|npc_ctid\n"
              "idx_reports_forts|reports|file_name\n"
              "idx_reports_heros|reports|hero_id_1,hero_id_2\n"
              "idx_reports_mtime|reports|file_mtime\n"
              "idx_reports_unmarked_forts|reports|damage_dealt\n"
              "idx_slices_file|chain_slices|file_name,chain_start_time,chain_end_time\n"
              "idx_slices_time|chain_slices|<expr>\n"
              "idx_trial_boss|trial_reports|boss_name\n"
              "idx_trial_loot_part|trial_loot|participant_id\n"
              "idx_trial_part_file|trial_participants|file_name\n"
              "idx_trial_part_name|trial_participants|player_name\n"
              "idx_trial_part_player|trial_participants|player_id\n"
              "idx_trial_time|trial_reports|event_time"_s);
    EXPECT_EQ(plain.text(u"SELECT m.name, group_concat(t.name) FROM sqlite_master m "
                         "JOIN pragma_table_info(m.name) t WHERE t.pk > 0 GROUP BY m.name"_s),
              u"chain_slice_loot|slice_id\n"
              "chain_slices|id\n"
              "examined_mails|file_name\n"
              "field_reports|file_name,attack_id\n"
              "fort_loot|id\n"
              "fort_reports|file_name\n"
              "loot|id\n"
              "reports|file_name,round_no\n"
              "settings|key\n"
              "stale_chains|file_name\n"
              "trial_loot|id\n"
              "trial_participants|id\n"
              "trial_reports|file_name"_s);
}

TEST(StoreSchema, ASecondStartChangesNothing)
{
    TempStore store;
    store.db.insert_report(u"a"_s, battle(1.0, {battle_round(5.0, {item(1, 2, 3)})}), 1.0);
    store.db.set_setting(u"theme"_s, u"light"_s);
    const PlainConnection plain(store.path);
    const auto shape = [&plain] {
        return plain.text(u"SELECT * FROM sqlite_master"_s);
    };
    const QString shape_before = shape();
    const QString rows_before = store_dump(store.db);
    data::TallyDb again(store.path);
    EXPECT_FALSE(again.init_schema());
    EXPECT_EQ(shape(), shape_before);
    EXPECT_EQ(store_dump(again), rows_before);
    EXPECT_EQ(again.get_setting(u"theme"_s), u"light"_s);
}

TEST(StoreMigration, ReportsOfWholeChainsAreDroppedWithTheirLootAndNothingElse)
{
    OldStore store(
        {u"CREATE TABLE reports (file_name TEXT PRIMARY KEY, npc_btype REAL)"_s,
         u"INSERT INTO reports VALUES ('a', 1)"_s, old_loot,
         u"INSERT INTO loot (file_name, value) VALUES ('a', 1)"_s, old_settings, migration_mark,
         u"CREATE TABLE field_reports (file_name TEXT NOT NULL, attack_id REAL NOT NULL, "
         "email_time REAL, player_id REAL, enemy_id REAL, tour_id REAL, email_id REAL, "
         "email_box TEXT, enemy_npc_btype REAL, PRIMARY KEY (file_name, attack_id))"_s,
         u"INSERT INTO field_reports (file_name, attack_id) VALUES ('f', 3)"_s});
    EXPECT_TRUE(store.db.init_schema());
    EXPECT_EQ(store.columns(u"reports"_s), lines(battle_columns));
    EXPECT_EQ(store.plain.text(u"SELECT (SELECT count(*) FROM reports), "
                               "(SELECT count(*) FROM loot), (SELECT count(*) FROM settings), "
                               "(SELECT attack_id FROM field_reports)"_s),
              u"0|0|1|3"_s);
    EXPECT_FALSE(store.db.report_exists(u"a"_s));
    EXPECT_FALSE(store.db.init_schema());
}

struct OldFieldTable {
    const char *columns;
    bool mark_survives;
};

void PrintTo(const OldFieldTable &table, std::ostream *out)
{
    *out << table.columns;
}

class StoreMigrationOfFields : public testing::TestWithParam<OldFieldTable> {};

// The first rule leaves the second no table to look at, so the mark stays.
TEST_P(StoreMigrationOfFields, TheTableIsDroppedAndOnlyTheTourRuleTakesTheMark)
{
    OldStore store({u"CREATE TABLE field_reports (%1)"_s.arg(QLatin1StringView(GetParam().columns)),
                    u"INSERT INTO field_reports (file_name) VALUES ('f')"_s, old_settings,
                    migration_mark, u"INSERT INTO settings VALUES ('theme', 'light')"_s});
    EXPECT_TRUE(store.db.init_schema());
    EXPECT_EQ(store.columns(u"field_reports"_s), lines(field_columns));
    EXPECT_EQ(store.db.field_report_count(), 0);
    EXPECT_EQ(store.db.get_setting(u"npc_migration_v4_done"_s).has_value(),
              GetParam().mark_survives);
    EXPECT_EQ(store.db.get_setting(u"theme"_s), u"light"_s);
    EXPECT_FALSE(store.db.init_schema());
}

INSTANTIATE_TEST_SUITE_P(OldShapes, StoreMigrationOfFields,
                         testing::Values(OldFieldTable{"file_name TEXT PRIMARY KEY", true},
                                         OldFieldTable{"file_name TEXT, tour_id REAL", true},
                                         OldFieldTable{"file_name TEXT, attack_id REAL", false}));

TEST(StoreMigration, TheTourRuleNeedsNoSettingsTable)
{
    OldStore store({u"CREATE TABLE field_reports (file_name TEXT, attack_id REAL)"_s});
    EXPECT_TRUE(store.db.init_schema());
    EXPECT_EQ(store.columns(u"field_reports"_s), lines(field_columns));
}

TEST(StoreMigration, MissingColumnsAreAddedAndRowsStay)
{
    OldStore store(
        {old_reports, u"INSERT INTO reports (file_name, level) VALUES ('a', 45)"_s,
         u"CREATE TABLE field_reports (file_name TEXT NOT NULL, attack_id REAL NOT NULL, "
         "attack_seq INTEGER, file_mtime REAL, imported_at REAL, email_time REAL, "
         "end_date REAL, email_id REAL, email_box TEXT, email_type TEXT, "
         "email_role TEXT, email_receiver TEXT, tour_id REAL, n_attacks INTEGER, "
         "is_kvk INTEGER, enemy_npc_type REAL, enemy_npc_btype REAL, player_id REAL, "
         "player_name TEXT, alliance_name TEXT, my_hid REAL, my_hid2 REAL, "
         "enemy_id REAL, enemy_name TEXT, enemy_alliance TEXT, enemy_hid REAL, "
         "enemy_hid2 REAL, PRIMARY KEY (file_name, attack_id))"_s,
         u"INSERT INTO field_reports (file_name, attack_id) VALUES ('f', 1)"_s,
         u"CREATE TABLE fort_reports (file_name TEXT PRIMARY KEY, mail_id TEXT, "
         "fort_level INTEGER, tile_x INTEGER, tile_y INTEGER, damage_percent INTEGER, "
         "event_time REAL, file_mtime REAL)"_s,
         u"CREATE TABLE hero_dict (id INTEGER)"_s, u"CREATE TABLE item_dict (id INTEGER)"_s});
    EXPECT_FALSE(store.db.init_schema());
    EXPECT_EQ(store.columns(u"reports"_s),
              lines(u"file_name TEXT, round_no INTEGER, npc_btype REAL, npc_type REAL, level REAL, "
                    "result REAL, report_time REAL, file_mtime REAL, imported_at REAL, "
                    "chain_start_time REAL, chain_end_time REAL, hero_id_1 REAL, hero_id_2 REAL, "
                    "npc_ctid REAL, disappear_tick REAL, damage_taken REAL, damage_dealt REAL, "
                    "ets REAL, player_id REAL, player_name TEXT, alliance_name TEXT, "
                    "is_free_ap INTEGER, is_fort_round INTEGER"_s));
    const auto sorted = [](const QString &text) {
        QStringList list = text.split(u'\n');
        std::ranges::sort(list);
        return list;
    };
    EXPECT_EQ(sorted(store.columns(u"field_reports"_s)), sorted(lines(field_columns)));
    EXPECT_THAT(store.columns(u"fort_reports"_s).toStdString(), HasSubstr("battle_file_name TEXT"));
    EXPECT_EQ(store.plain.text(u"SELECT level, is_free_ap, is_fort_round, ets FROM reports"_s),
              u"45|0|0|NULL"_s);
    EXPECT_EQ(store.db.field_report_count(), 1);
    EXPECT_EQ(store.plain.text(u"SELECT name FROM sqlite_master WHERE name LIKE '%\\_dict' "
                               "ESCAPE '\\'"_s),
              u""_s);
    store.db.insert_report(u"b"_s, battle(1.0, {battle_round(1.0)}), 1.0);
    store.db.insert_field_report(u"g"_s, field_fight({u"Bo"_s}), 1.0);
}

TEST(StoreBackfill, FifteenHundredThousandDamageMakesAFortRoundAndTheRestOfItsChainFree)
{
    TempStore store;
    store.db.insert_report(u"below"_s, battle(1.0, {battle_round(1499999.0), battle_round({})}),
                           1.0);
    store.db.insert_report(
        u"fort"_s, battle(1.0, {battle_round(10.0), battle_round(1500000.0), battle_round({})}),
        1.0);
    store.db.init_schema();
    EXPECT_EQ(PlainConnection(store.path)
                  .text(u"SELECT file_name, round_no, is_fort_round, is_free_ap FROM reports "
                        "ORDER BY 1, 2"_s),
              u"below|0|0|0\nbelow|1|0|0\nfort|0|0|1\nfort|1|1|0\nfort|2|0|1"_s);
}

TEST(StoreSchema, StartingLinksTheFortsThatWaitForTheirChain)
{
    TempStore store;
    store.db.insert_report(u"chain"_s, battle(1000.0, {battle_round(1.0)}), 1.0);
    store.db.insert_fort_report(u"fort"_s, fort(1001.0), 1.0);
    store.db.init_schema();
    EXPECT_EQ(PlainConnection(store.path).text(u"SELECT battle_file_name FROM fort_reports"_s),
              u"chain"_s);
}

TEST(StoreSchema, AStatementThatFailsIsNamedAndTheNextStartMayTryAgain)
{
    OldStore store({u"CREATE TABLE trial_reports (file_name TEXT PRIMARY KEY)"_s});
    for (int start = 0; start < 2; ++start)
        EXPECT_THAT(failure_of([&] { store.db.init_schema(); }),
                    StartsWith("TallyDb fatal: schema stmt failed: CREATE INDEX IF NOT EXISTS "
                               "idx_trial_time ON trial_reports(event_time);: "));
    store.plain.rows(u"DROP TABLE trial_reports"_s);
    EXPECT_FALSE(store.db.init_schema());
}

TEST(StoreLinks, ChainsAreLookedUpByTheIndexOnTheirTime)
{
    TempStore store;
    for (const auto *marked : {u"", u"AND COALESCE(r.is_fort_round, 0) = 1 "}) {
        const auto plan =
            PlainConnection(store.path)
                .text(u"EXPLAIN QUERY PLAN SELECT DISTINCT r.file_name FROM reports r "
                      "WHERE COALESCE(r.chain_start_time, r.file_mtime) BETWEEN 1 AND 2 %1"
                      "ORDER BY ABS(COALESCE(r.chain_start_time, r.file_mtime) - 1) LIMIT 1"_s.arg(
                          QStringView(marked)));
        EXPECT_THAT(plan.toStdString(), HasSubstr("idx_reports_chain_time"));
    }
}
