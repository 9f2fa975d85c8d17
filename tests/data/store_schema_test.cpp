#include "support/plain_connection.h"
#include "support/report_builders.h"
#include "support/store_dump.h"
#include "support/temp_store.h"

#include <gmock/gmock.h>

using namespace tally;
using namespace tally::test;
using namespace Qt::StringLiterals;
using testing::StartsWith;

namespace {

/// An empty file, or one that an earlier build left.
struct OldStore {
    explicit OldStore(const QStringList &statements = {})
    {
        for (const QString &statement : statements)
            plain.rows(statement);
    }
    /// "name type" of every column, in the order of names.
    QString columns(const QString &table) const
    {
        return plain.text(
            u"SELECT name || ' ' || type FROM pragma_table_info('%1') ORDER BY 1"_s.arg(table));
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"tally.db"_s);
    PlainConnection plain{path};
    data::TallyDb db{path};
};

/// Columns of a table of a store that this build makes.
QString columns_now(const QString &table)
{
    OldStore store;
    store.db.init_schema();
    return store.columns(table);
}

const QString old_reports =
    u"CREATE TABLE reports (file_name TEXT NOT NULL, round_no INTEGER NOT NULL DEFAULT 0, "
    "npc_btype REAL, npc_type REAL, level REAL, result REAL, report_time REAL, file_mtime REAL, "
    "imported_at REAL, PRIMARY KEY (file_name, round_no))"_s;
const QString old_field_reports =
    u"CREATE TABLE field_reports (file_name TEXT NOT NULL, attack_id REAL NOT NULL, "
    "attack_seq INTEGER, file_mtime REAL, imported_at REAL, email_time REAL, "
    "end_date REAL, email_id REAL, email_box TEXT, email_type TEXT, "
    "email_role TEXT, email_receiver TEXT, tour_id REAL, n_attacks INTEGER, "
    "is_kvk INTEGER, enemy_npc_type REAL, enemy_npc_btype REAL, player_id REAL, "
    "player_name TEXT, alliance_name TEXT, my_hid REAL, my_hid2 REAL, "
    "enemy_id REAL, enemy_name TEXT, enemy_alliance TEXT, enemy_hid REAL, "
    "enemy_hid2 REAL, PRIMARY KEY (file_name, attack_id))"_s;
const QString old_settings = u"CREATE TABLE settings (key TEXT PRIMARY KEY, value TEXT)"_s;
const QString migration_mark = u"INSERT INTO settings VALUES ('npc_migration_v4_done', '1')"_s;

} // namespace

TEST(StoreSchema, ANewFileHasItsKeysAndIndexesAndTheSameColumnsForBothArmies)
{
    TempStore store;
    const QSqlDatabase db = store.db.connection();
    EXPECT_EQ(text_of(db, u"SELECT group_concat(name, ' ') FROM (SELECT m.name || '.' || t.name AS "
                          "name FROM sqlite_master m JOIN pragma_table_info(m.name) t "
                          "WHERE t.pk > 0 ORDER BY m.name, t.pk)"_s),
              u"chain_slice_loot.slice_id chain_slices.id examined_mails.file_name "
              "field_reports.file_name field_reports.attack_id fort_loot.id "
              "fort_reports.file_name loot.id report_changes.id reports.file_name reports.round_no "
              "settings.key stale_chains.file_name trial_loot.id trial_participants.id "
              "trial_reports.file_name");
    EXPECT_EQ(text_of(db, u"SELECT replace(name, 'my_', 'enemy_') FROM "
                          "pragma_table_info('field_reports') WHERE name LIKE 'my\\_%' ESCAPE '\\' "
                          "EXCEPT SELECT name FROM pragma_table_info('field_reports')"_s),
              u"");
    EXPECT_EQ(text_of(db, u"SELECT group_concat(name, ' ') FROM (SELECT substr(name, 5) AS name "
                          "FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL "
                          "ORDER BY name)"_s),
              u"field_accounts field_box field_email field_enemy field_file field_npc field_player "
              u"field_time "
              "field_tour fort_battle fort_level fort_loot_file fort_time honor_log_time loot_file "
              "loot_item reports_btype reports_chain_time reports_ctid reports_forts reports_heros "
              "reports_mtime reports_unmarked_forts slices_file slices_mail slices_time trial_boss "
              "trial_loot_part trial_part_file trial_part_name trial_part_player trial_time");
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
    OldStore store({u"CREATE TABLE reports (file_name TEXT PRIMARY KEY, npc_btype REAL)"_s,
                    u"INSERT INTO reports VALUES ('a', 1)"_s,
                    u"CREATE TABLE loot (id INTEGER PRIMARY KEY, file_name TEXT, value REAL)"_s,
                    u"INSERT INTO loot (file_name, value) VALUES ('a', 1)"_s, old_settings,
                    migration_mark, old_field_reports,
                    u"INSERT INTO field_reports (file_name, attack_id) VALUES ('f', 3)"_s});
    EXPECT_TRUE(store.db.init_schema());
    EXPECT_EQ(store.columns(u"reports"_s), columns_now(u"reports"_s));
    EXPECT_EQ(store.plain.text(u"SELECT (SELECT count(*) FROM reports), "
                               "(SELECT count(*) FROM loot), (SELECT count(*) FROM settings), "
                               "(SELECT attack_id FROM field_reports)"_s),
              u"0|0|1|3"_s);
    EXPECT_FALSE(store.db.init_schema());
}

// The first rule leaves the second no table to look at, so the mark stays.
TEST(StoreMigration, OldFieldTablesAreDroppedAndOnlyTheTourRuleTakesTheMark)
{
    for (const auto &[columns, mark_survives] : {std::pair(u"file_name TEXT PRIMARY KEY"_s, true),
                                                 {u"file_name TEXT, tour_id REAL"_s, true},
                                                 {u"file_name TEXT, attack_id REAL"_s, false}}) {
        OldStore store({u"CREATE TABLE field_reports (%1)"_s.arg(columns),
                        u"INSERT INTO field_reports (file_name) VALUES ('f')"_s, old_settings,
                        migration_mark, u"INSERT INTO settings VALUES ('theme', 'light')"_s});
        EXPECT_TRUE(store.db.init_schema());
        EXPECT_EQ(store.columns(u"field_reports"_s), columns_now(u"field_reports"_s));
        EXPECT_EQ(store.db.field_report_count(), 0);
        EXPECT_EQ(store.db.get_setting(u"npc_migration_v4_done"_s).has_value(), mark_survives);
        EXPECT_EQ(store.db.get_setting(u"theme"_s), u"light"_s);
        EXPECT_FALSE(store.db.init_schema());
    }
    OldStore without_settings({u"CREATE TABLE field_reports (file_name TEXT, attack_id REAL)"_s});
    EXPECT_TRUE(without_settings.db.init_schema());
}

TEST(StoreMigration, MissingColumnsAreAddedAndRowsStay)
{
    OldStore store(
        {old_reports, u"INSERT INTO reports (file_name, level) VALUES ('a', 45)"_s,
         old_field_reports, u"INSERT INTO field_reports (file_name, attack_id) VALUES ('f', 1)"_s,
         u"CREATE TABLE fort_reports (file_name TEXT PRIMARY KEY, mail_id TEXT, "
         "fort_level INTEGER, tile_x INTEGER, tile_y INTEGER, damage_percent INTEGER, "
         "event_time REAL, file_mtime REAL)"_s,
         u"CREATE TABLE hero_dict (id INTEGER)"_s, u"CREATE TABLE item_dict (id INTEGER)"_s});
    EXPECT_FALSE(store.db.init_schema());
    for (const QString &table : {u"reports"_s, u"field_reports"_s, u"fort_reports"_s, u"loot"_s})
        EXPECT_EQ(store.columns(table), columns_now(table));
    EXPECT_EQ(store.plain.text(u"SELECT level, is_free_ap, is_fort_round, ets FROM reports"_s),
              u"45|0|0|NULL"_s);
    EXPECT_EQ(store.db.field_report_count(), 1);
    EXPECT_EQ(store.plain.text(u"SELECT name FROM sqlite_master WHERE name GLOB '*_dict'"_s), u"");
    store.db.insert_report(u"b"_s, battle(1.0, {battle_round(1.0)}), 1.0);
    store.db.insert_field_report(u"g"_s, field_fight({u"Bo"_s}), 1.0);
}

TEST(StoreBackfill, FifteenHundredThousandDamageOrALinkMakesAFortRoundAndTheRestOfItsChainFree)
{
    TempStore store;
    store.db.insert_report(u"below"_s, battle(1.0, {battle_round(1499999.0), battle_round({})}),
                           1.0);
    store.db.insert_report(
        u"fort"_s, battle(1.0, {battle_round(10.0), battle_round(1500000.0), battle_round({})}),
        1.0);
    store.db.insert_report(u"linked"_s, battle(5000.0, {battle_round(1.0)}), 1.0);
    store.db.insert_fort_report(u"waiting"_s, fort(5000.0), 1.0);
    store.db.init_schema();
    EXPECT_EQ(PlainConnection(store.path)
                  .text(u"SELECT file_name, round_no, is_fort_round, is_free_ap FROM reports "
                        "ORDER BY 1, 2"_s),
              u"below|0|0|0\nbelow|1|0|0\nfort|0|0|1\nfort|1|1|0\nfort|2|0|1\nlinked|0|1|0"_s);
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
