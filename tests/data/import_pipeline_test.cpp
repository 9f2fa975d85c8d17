#include "import/import_pipeline.h"

#include "files/exact_files.h"
#include "mail_encoder.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"

#include <QDir>
#include <QSqlQuery>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace tally::data {
namespace {

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

QByteArray chain_round()
{
    return entry("NpcType", number(150009)) + entry("NpcBType", number(1));
}

QByteArray chain_mail(const QByteArray &before_loot = {}, double start = chain_start)
{
    return sample::mail(entry("type", text("Battle")) + entry("Bts", number(start)) +
                        chain_round() + before_loot + entry("NpcKillLoot", loot_map()));
}

QByteArray field_mail(const QByteArray &before_attacks = {})
{
    const QByteArray attack = map({entry("CIdt", map({entry("PId", number(7))}))});
    return sample::mail(entry("type", text("Battle")) +
                        entry("content", map(before_attacks + entry("Attacks", array({attack})))));
}

QByteArray trial_mail()
{
    const QByteArray content = map({entry("infos", array({map({entry("playerId", number(1))})}))});
    return sample::mail(entry("type", text("BarCanyonKillBoss")) +
                        entry("body", map({entry("content", content)})));
}

QByteArray fort_mail(double event_time = chain_start, bool with_loot = true)
{
    const QByteArray attachments = with_loot ? array({map({entry("loot", loot_map())})}) : map();
    return sample::mail(entry("type", text("System")) + entry("time", number(event_time * 1e6)) +
                        entry("body", map({entry("title", text("Barbarian Fort destroyed"))})) +
                        entry("attachments", attachments));
}

/// More bytes than the head of a file that most stages look at.
QByteArray padding()
{
    return entry("padding", text(QByteArray(40000, 'x')));
}

int count_of(const TallyDb &db, const char *table)
{
    QSqlQuery query(db.connection());
    query.exec(QStringLiteral("SELECT COUNT(*) FROM %1").arg(QLatin1StringView(table)));
    return query.next() ? query.value(0).toInt() : -1;
}

ImportStats import(const TempMails &mails, TallyDb &db)
{
    return import_dir(mails.path(), {}, db, {}, nullptr);
}

struct MailCase {
    const char *what;
    QByteArray content;
    const char *table; ///< null: of no interest
};

class OneMail : public testing::TestWithParam<MailCase> {};

TEST_P(OneMail, IsStoredOnceAndOnlyInItsTable)
{
    const TempMails mails;
    TempStore store;
    const QString path = mails.add(QStringLiteral("Persistent.Mail.1"), GetParam().content);
    EXPECT_EQ(import_file(path, {}, store.db), GetParam().table != nullptr);
    EXPECT_FALSE(import_file(path, {}, store.db));
    for (const char *table : {"reports", "field_reports", "trial_reports", "fort_reports"}) {
        const bool expected = GetParam().table && std::string_view(GetParam().table) == table;
        EXPECT_EQ(count_of(store.db, table), expected ? 1 : 0) << table;
    }
}

INSTANTIATE_TEST_SUITE_P(
    , OneMail,
    testing::Values(MailCase{"chain", chain_mail(), "reports"},
                    MailCase{"field fight", field_mail(), "field_reports"},
                    MailCase{"field fight with its attacks far behind", field_mail(padding()),
                             "field_reports"},
                    MailCase{"boss kill", trial_mail(), "trial_reports"},
                    MailCase{"fort", fort_mail(), "fort_reports"},
                    MailCase{"fort without loot", fort_mail(chain_start, false), nullptr},
                    MailCase{"chain with its loot behind the head", chain_mail(padding()), nullptr},
                    MailCase{"no mail", "garbage no marker", nullptr},
                    MailCase{"empty", {}, nullptr},
                    MailCase{"torn chain", chain_mail().chopped(1), nullptr}),
    [](const auto &test_case) {
        return QString::fromLatin1(test_case.param.what).replace(u' ', u'_').toStdString();
    });

TEST(ImportDir, TakesMailFilesOnlyAndCallsBackEvery200FilesAndAtTheEnd)
{
    const TempMails mails;
    TempStore store;
    for (int i = 0; i < 400; ++i)
        mails.add(QStringLiteral("Persistent.Mail.%1").arg(i), i == 0 ? chain_mail() : "other");
    mails.add(QStringLiteral("Persistent.Mail"), chain_mail());
    mails.add(QStringLiteral("persistent.mail.1"), chain_mail());
    mails.add(QStringLiteral("x.Persistent.Mail.1"), chain_mail());
    QDir(mails.path()).mkdir(QStringLiteral("Persistent.Mail.folder"));
    QFile::link(mails.file(QStringLiteral("Persistent.Mail.0")),
                mails.file(QStringLiteral("Persistent.Mail.link")));

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

TEST(ImportDir, OfWhatIsNoFolderCountsOneErrorAndDoesNothingElse)
{
    TempStore store;
    bool called = false;
    const ImportStats stats = import_dir(
        QStringLiteral("/nowhere/at/all"), {}, store.db, [&](int, int, int) { called = true; },
        nullptr);
    EXPECT_EQ(stats.errors, 1);
    EXPECT_EQ(stats.scanned, 0);
    EXPECT_FALSE(called);
}

TEST(ImportDir, StopsBetweenFilesWhenCancelled)
{
    const TempMails mails;
    TempStore store;
    for (int i = 0; i < 450; ++i)
        mails.add(QStringLiteral("Persistent.Mail.%1").arg(i), "other");
    std::atomic<bool> cancel = false;
    int calls = 0;
    const ImportStats stats = import_dir(
        mails.path(), {}, store.db,
        [&](int, int, int) {
            ++calls;
            cancel = true;
        },
        &cancel);
    EXPECT_EQ(stats.scanned, 200);
    EXPECT_EQ(calls, 2) << "once at 200 and once at the end";
}

TEST(ImportDir, GoesOnBehindAFileWhoseLookUpFails)
{
    const TempMails mails;
    TempStore store;
    mails.add(QStringLiteral("Persistent.Mail.1"), chain_mail());
    mails.add(QStringLiteral("Persistent.Mail.2"), chain_mail());
    QSqlQuery(store.db.connection()).exec(QStringLiteral("DROP TABLE fort_reports"));
    const ImportStats stats = import(mails, store.db);
    EXPECT_EQ(stats.scanned, 2);
    EXPECT_EQ(stats.errors, 2);
    EXPECT_EQ(stats.imported, 0);
}

TEST(ImportDir, LinksAFortToAChainThatIsImportedLater)
{
    const TempMails mails;
    TempStore store;
    mails.add(QStringLiteral("Persistent.Mail.fort"), fort_mail(chain_start + 300.0));
    import(mails, store.db);
    const auto linked = [&store] {
        QSqlQuery query(store.db.connection());
        query.exec(QStringLiteral("SELECT battle_file_name FROM fort_reports"));
        return query.next() ? query.value(0).toString() : QString();
    };
    EXPECT_EQ(linked(), QString());
    const QString chain = QStringLiteral("Persistent.Mail.zz");
    mails.add(chain, chain_mail());
    import(mails, store.db);
    EXPECT_EQ(linked(), chain);
}

TEST(ImportFile, KeepsTheFirstVersionOfAFileAsItsRawCopy)
{
    const TempMails mails;
    const QTemporaryDir data;
    TempStore store;
    const QString raw = data.filePath(QStringLiteral("deep/raw"));
    const QString name = QStringLiteral("Persistent.Mail.1");
    import_file(mails.add(name, "half a mail"), raw, store.db);
    EXPECT_TRUE(import_file(mails.add(name, chain_mail()), raw, store.db))
        << "a file that was torn is imported when it has become whole";
    EXPECT_EQ(platform::read_file(QDir(raw).filePath(name)), "half a mail");
}

TEST(ImportFile, StoresTheFilesTimeToTheMillisecond)
{
    const TempMails mails;
    TempStore store;
    import_file(mails.add(QStringLiteral("Persistent.Mail.1"), chain_mail(), 1'699'999'999.123), {},
                store.db);
    QSqlQuery query(store.db.connection());
    query.exec(QStringLiteral("SELECT file_mtime FROM reports"));
    ASSERT_TRUE(query.next());
    EXPECT_DOUBLE_EQ(query.value(0).toDouble(), 1'699'999'999.123);
}

TEST(ImportDir, ImportsNamesThatAreNotUtf8OnceEach)
{
    const TempMails mails;
    TempStore store;
    const QByteArray folder = mails.path().toLocal8Bit() + "/Persistent.Mail.";
    for (const QByteArray &name : {QByteArray("\xff"), QByteArray("\xfe"), QByteArray("a\xc3")}) {
        std::FILE *file = std::fopen((folder + name).constData(), "wb");
        ASSERT_NE(file, nullptr);
        const QByteArray content = chain_mail();
        std::fwrite(content.constData(), 1, static_cast<size_t>(content.size()), file);
        std::fclose(file);
    }
    EXPECT_EQ(import(mails, store.db).imported, 3);
    EXPECT_EQ(store.db.chain_file_count(), 3);
    EXPECT_EQ(import(mails, store.db).imported, 0);
}

} // namespace
} // namespace tally::data
