#include "data/import/import_pipeline.h"

#include "data/import/battle_file.h"
#include "data/master/master_cache.h"
#include "mail_encoder.h"
#include "support/hostile_mails.h"
#include "support/log_capture.h"
#include "support/plain_connection.h"
#include "support/small_mails.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"

#include <QDir>

#include <gtest/gtest.h>

#include <fstream>
#include <tuple>
#include <vector>

namespace tally::data {
namespace {

using namespace Qt::StringLiterals;
using sample::array;
using sample::entry;
using sample::map;
using sample::number;
using sample::text;
using test::TempMails;
using test::TempStore;

constexpr double chain_start = 1.7e9;

QByteArray loot_map()
{
    return array(
        {map({entry("Type", number(4)), entry("SubType", number(1)), entry("Value", number(30))})});
}

QByteArray chain_mail(const QByteArray &before_loot = {}, double start = chain_start)
{
    return sample::mail(entry("type", text("Battle")) + entry("Bts", number(start)) +
                        entry("NpcType", number(150009)) + entry("NpcBType", number(1)) +
                        before_loot + entry("NpcKillLoot", loot_map()));
}

QByteArray field_mail(const QByteArray &before_attacks = {})
{
    const QByteArray attack = map({entry("CIdt", map({entry("PId", number(7))}))});
    return sample::mail(entry("type", text("Battle")) +
                        entry("content", map(before_attacks + entry("Attacks", array({attack})))));
}

/// More bytes than the head of a file that most stages look at.
QByteArray padding()
{
    return entry("padding", text(QByteArray(40000, 'x')));
}

QString text_in(const TempStore &store, const QString &sql)
{
    return test::text_of(store.db.connection(), sql);
}

ImportStats import(const TempMails &mails, TallyDb &db)
{
    return import_dir(mails.path(), {}, db, {}, nullptr);
}

TEST(ImportDir, AddsUpAllChainsThatLinkingMarked)
{
    const TempMails mails;
    TempStore store;
    constexpr int forts = 250; // more than one step of the store takes
    for (int i = 0; i < forts; ++i) {
        const double start = chain_start + 1000.0 * i;
        mails.add(QStringLiteral("Persistent.Mail.chain-%1").arg(i), chain_mail({}, start));
        mails.add(QStringLiteral("Persistent.Mail.fort-%1").arg(i), test::fort_mail(start + 10.0));
    }
    EXPECT_EQ(import(mails, store.db).imported, 2 * forts);
    EXPECT_EQ(text_in(store, u"SELECT COUNT(battle_file_name) FROM fort_reports"_s),
              QString::number(forts));
    EXPECT_EQ(text_in(store, u"SELECT COUNT(*) FROM stale_chains"_s), u"0");
}

TEST(ImportFile, TakesOnlyWholeReportsThatShowWhereTheirKindDoes)
{
    const TempMails mails;
    TempStore store;
    const std::pair<QByteArray, bool> contents[] = {{field_mail(padding()), true},
                                                    {chain_mail(padding()), false},
                                                    {chain_mail().chopped(1), false},
                                                    {"garbage no marker", false},
                                                    {{}, false}};
    int number = 0;
    for (const auto &[content, is_field_fight] : contents) {
        const QString name = u"Persistent.Mail.%1"_s.arg(++number);
        EXPECT_EQ(import_file(mails.add(name, content), {}, store.db), is_field_fight) << number;
        EXPECT_EQ(store.db.field_report_exists(name), is_field_fight) << number;
    }
}

TEST(ImportDir, NamesAMailBeyondAllBoundsOnceAndGoesOn)
{
    const TempMails mails;
    TempStore store;
    const test::LogCapture log;
    mails.add(u"Persistent.Mail.1"_s, test::chain_of_shared_loot(5'000), chain_start);
    mails.add(u"Persistent.Mail.2"_s, chain_mail(), chain_start);
    EXPECT_EQ(import(mails, store.db).imported, 1);
    import(mails, store.db);
    EXPECT_EQ(test::LogCapture::lines(u"passed over \"Persistent.Mail.1\" because it has more "
                                      "than 4096 loot entries in a round"_s)
                  .size(),
              1);
}

TEST(ImportDir, TakesMailFilesOnlyAndCallsBackEvery200FilesAndAtTheEnd)
{
    const TempMails mails;
    TempStore store;
    for (int i = 0; i < 400; ++i)
        mails.add(u"Persistent.Mail.%1"_s.arg(i), i == 0 ? chain_mail() : "other");
    mails.add(u"Persistent.Mail"_s, chain_mail());
    mails.add(u"persistent.mail.x"_s, chain_mail());
    mails.add(u"x.Persistent.Mail.1"_s, chain_mail());
    QDir(mails.path()).mkdir(u"Persistent.Mail.folder"_s);
#ifndef Q_OS_WIN // where this would be a file like any other
    QFile::link(mails.file(u"Persistent.Mail.0"_s), mails.file(u"Persistent.Mail.link"_s));
#endif

    std::vector<std::tuple<int, int, int>> calls;
    const ImportStats stats = import_dir(
        mails.path(), {}, store.db,
        [&calls](int scanned, int total, int imported) {
            calls.emplace_back(scanned, total, imported);
        },
        nullptr);
    EXPECT_EQ(stats.scanned, 400);
    EXPECT_EQ(stats.imported, 1);
    EXPECT_EQ(stats.errors, 0);
    const std::vector expected{std::tuple(200, 400, 1), std::tuple(400, 400, 1),
                               std::tuple(400, 400, 1)};
    EXPECT_EQ(calls, expected);
}

TEST(ImportDir, StopsBetweenFilesWhenCancelled)
{
    const TempMails mails;
    TempStore store;
    for (int i = 0; i < 450; ++i)
        mails.add(u"Persistent.Mail.%1"_s.arg(i), "other");
    std::atomic<bool> cancel = false;
    int calls = 0;
    const auto progress = [&](int, int, int) {
        ++calls;
        cancel = true;
    };
    EXPECT_EQ(import_dir(mails.path(), {}, store.db, progress, &cancel).scanned, 200);
    EXPECT_EQ(calls, 2) << "once at 200 and once at the end";
}

TEST(ImportDir, LinksAFortToAChainThatIsImportedLater)
{
    const TempMails mails;
    TempStore store;
    mails.add(u"Persistent.Mail.fort"_s, test::fort_mail(chain_start + 300.0));
    import(mails, store.db);
    const QString linked = u"SELECT battle_file_name FROM fort_reports"_s;
    EXPECT_EQ(text_in(store, linked), u"NULL");
    const QString chain = u"Persistent.Mail.zz"_s;
    mails.add(chain, chain_mail());
    import(mails, store.db);
    EXPECT_EQ(text_in(store, linked), chain);
}

TEST(ImportFile, TakesLevelsFromTheReferenceTables)
{
    const TempMails mails;
    TempStore store;
    auto &tables = MasterCache::instance();
    ASSERT_TRUE(tables.load_json(u"barbs"_s, R"({"types": [
        {"npc_type_min": 7, "npc_type_max": 7, "name": "Seven", "level_offset": 10}]})"));
    const QString path =
        mails.add(u"Persistent.Mail.1"_s,
                  sample::mail(entry("type", text("Battle")) + entry("NpcType", number(7)) +
                               entry("NpcKillLoot", loot_map())));
    const auto report = parse_battle(path);
    import_file(path, {}, store.db);
    tables.clear();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->rounds.at(0).level, 17.0);
    EXPECT_EQ(text_in(store, u"SELECT level FROM reports"_s), u"17");
}

TEST(ImportFile, StoresTheFilesTimeToTheMillisecond)
{
    const TempMails mails;
    TempStore store;
    import_file(mails.add(u"Persistent.Mail.1"_s, chain_mail(), 1'699'999'999.123), {}, store.db);
    EXPECT_EQ(text_in(store, u"SELECT CAST(file_mtime * 1000 AS INT) FROM reports"_s),
              u"1699999999123");
}

TEST(ImportDir, ImportsNamesThatAreNotUtf8OnceEach)
{
    const TempMails mails;
    TempStore store;
    const QByteArray folder = mails.path().toLocal8Bit() + "/Persistent.Mail.";
    for (const char *name : {"\xff", "\xfe", "a\xc3"}) {
        std::ofstream file((folder + name).toStdString(), std::ios::binary);
        ASSERT_TRUE(file << chain_mail().toStdString());
    }
    EXPECT_EQ(import(mails, store.db).imported, 3);
    EXPECT_EQ(store.db.chain_file_count(), 3);
    EXPECT_EQ(import(mails, store.db).imported, 0);
}

} // namespace
} // namespace tally::data
