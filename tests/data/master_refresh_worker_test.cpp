#include "master/master_cache.h"
#include "master/master_refresh_worker.h"
#include "support/print_qt.h"
#include "support/reference_site.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <gmock/gmock.h>

namespace tally::data {
namespace {

using test::ReferenceSite;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr DownloadTimeouts test_timeouts{5000, 5000, 60000};

const QString index_path = QStringLiteral("/api/master/icons_index");

QString icon_request(const QString &hash)
{
    return QStringLiteral("/api/master/icon/") + hash;
}

/// A site with all tables and the icons "a1" (in two sections), "b-2" and "C_3".
class MasterRefresh : public testing::Test {
protected:
    MasterRefresh()
    {
        MasterCache::instance().clear();
        site_.put_table(QStringLiteral("heroes"), R"({"heroes":{"7":{"name":"Ajax"}}})");
        site_.put_table(QStringLiteral("items"), R"({"items":{}})");
        site_.put_table(QStringLiteral("inscriptions"), "{}");
        site_.put_table(QStringLiteral("armaments"), R"({"formations":{"1.0":"Wedge"}})");
        site_.put_table(QStringLiteral("barbs"), R"({"types":[]})");
        put_index({QStringLiteral("a1"), QStringLiteral("b-2")},
                  {QStringLiteral("a1"), QStringLiteral("C_3")});
        for (const char *hash : {"a1", "b-2", "C_3"})
            site_.put_icon(QLatin1StringView(hash), QByteArray("icon ") + hash);
    }

    void put_index(const QStringList &loot, const QStringList &commanders)
    {
        const auto section = [](const QStringList &hashes) {
            QJsonObject entries;
            for (const QString &hash : hashes)
                entries.insert(QStringLiteral("key %1").arg(entries.size()),
                               QJsonObject{{QStringLiteral("hash"), hash}});
            return entries;
        };
        site_.put_table(
            QStringLiteral("icons_index"),
            QJsonDocument(QJsonObject{{QStringLiteral("loot"), section(loot)},
                                      {QStringLiteral("all_loot"), QJsonObject()},
                                      {QStringLiteral("commanders"), section(commanders)}})
                .toJson());
    }

    /// Runs a worker on this thread, whose event loop serves the site. \return its result.
    bool refresh(DownloadTimeouts timeouts = test_timeouts)
    {
        MasterRefreshWorker worker(site_.endpoint(), icon_dir(), timeouts);
        QSignalSpy done(&worker, &MasterRefreshWorker::masterRefreshDone);
        QObject::connect(&worker, &MasterRefreshWorker::statusMessage, &worker,
                         [this](const QString &text) {
                             messages_.append(text);
                             if (on_message_)
                                 on_message_(text);
                         });
        worker.run();
        EXPECT_EQ(done.size(), 1);
        return done.value(0).value(0).toBool();
    }

    QString icon_dir() const { return dir_.filePath(QStringLiteral("data/icons")); }
    QStringList icons() const
    {
        return QDir(icon_dir()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QByteArray icon(const QString &name) const
    {
        return test::read_all(QDir(icon_dir()).filePath(name));
    }

    ReferenceSite site_;
    QTemporaryDir dir_;
    QStringList messages_;
    std::function<void(const QString &)> on_message_;
};

TEST_F(MasterRefresh, FetchesTablesInOrderThenTheIcons)
{
    EXPECT_TRUE(refresh());
    EXPECT_THAT(messages_, ElementsAre(QStringLiteral("Downloading heroes..."),
                                       QStringLiteral("Downloading items..."),
                                       QStringLiteral("Downloading inscriptions..."),
                                       QStringLiteral("Downloading armaments..."),
                                       QStringLiteral("Downloading barbs..."),
                                       QStringLiteral("Downloading icons_index..."),
                                       QStringLiteral("Downloading icons...")));
    EXPECT_EQ(MasterCache::instance().hero_name(7.0), QStringLiteral("Ajax"));
    EXPECT_EQ(MasterCache::instance().formation_name(1.0), QStringLiteral("Wedge"));
    EXPECT_EQ(icon(QStringLiteral("b-2.webp")), QByteArray("icon b-2"));
    EXPECT_EQ(MasterCache::instance().icon_path(QStringLiteral("loot"), QStringLiteral("key 1"),
                                                icon_dir()),
              QDir(icon_dir()).filePath(QStringLiteral("b-2.webp")));
}

TEST_F(MasterRefresh, AFailingTableDoesNotStopTheOthers)
{
    site_.break_with(QStringLiteral("status=500@/api/master/heroes"));
    EXPECT_TRUE(refresh());
    EXPECT_EQ(MasterCache::instance().hero_name(7.0), QStringLiteral("H7"));
    EXPECT_EQ(MasterCache::instance().formation_name(1.0), QStringLiteral("Wedge"));
    EXPECT_EQ(icons().size(), 3);
}

TEST_F(MasterRefresh, FailsWithoutAnIconStepWhenNoTableArrives)
{
    for (const QString &kind :
         {QStringLiteral("heroes"), QStringLiteral("items"), QStringLiteral("inscriptions"),
          QStringLiteral("armaments"), QStringLiteral("barbs"), QStringLiteral("icons_index")})
        site_.break_with(QStringLiteral("status=500@/api/master/") + kind);
    EXPECT_FALSE(refresh());
    EXPECT_FALSE(messages_.contains(QStringLiteral("Downloading icons...")));
    EXPECT_EQ(site_.requests_of(index_path), 1);
    EXPECT_THAT(icons(), IsEmpty());
}

TEST_F(MasterRefresh, SucceedsWithoutIconsWhenTheirIndexFailsTheSecondTime)
{
    on_message_ = [this](const QString &text) {
        if (text == u"Downloading icons...")
            site_.break_with(QStringLiteral("status=500@") + index_path);
    };
    EXPECT_TRUE(refresh());
    EXPECT_EQ(site_.requests_of(index_path), 2);
    EXPECT_THAT(icons(), IsEmpty());
}

TEST_F(MasterRefresh, AnOversizedTableKeepsItsOldDocument)
{
    site_.put_table(QStringLiteral("heroes"),
                    R"({"heroes":{"7":{"name":")" + QByteArray(16 << 20, 'x') + R"("}}})");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(MasterCache::instance().hero_name(7.0), QStringLiteral("H7"));
}

TEST_F(MasterRefresh, AsksForAnIconOfTwoSectionsOnce)
{
    refresh();
    EXPECT_EQ(site_.requests_of(icon_request(QStringLiteral("a1"))), 1);
    EXPECT_THAT(icons(),
                testing::UnorderedElementsAre(QStringLiteral("C_3.webp"), QStringLiteral("a1.webp"),
                                              QStringLiteral("b-2.webp")));
}

TEST_F(MasterRefresh, LeavesIconsThatExistAlone)
{
    QDir().mkpath(icon_dir());
    QFile file(QDir(icon_dir()).filePath(QStringLiteral("a1.webp")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();

    refresh();
    EXPECT_EQ(site_.requests_of(icon_request(QStringLiteral("a1"))), 0);
    EXPECT_EQ(icon(QStringLiteral("a1.webp")), QByteArray());
}

struct BadIcon {
    const char *name;
    QString fault; ///< for the icon a1
    QByteArray content;
};

class BadIconAnswer : public MasterRefresh, public testing::WithParamInterface<BadIcon> {};

TEST_P(BadIconAnswer, LeavesNoFileAndTheOthersArrive)
{
    site_.put_icon(QStringLiteral("a1"), GetParam().content);
    if (!GetParam().fault.isEmpty())
        site_.break_with(GetParam().fault + u'@' + icon_request(QStringLiteral("a1")));

    EXPECT_TRUE(refresh({5000, 2000, 60000}));
    EXPECT_THAT(icons(), testing::UnorderedElementsAre(QStringLiteral("C_3.webp"),
                                                       QStringLiteral("b-2.webp")));
    EXPECT_EQ(MasterCache::instance().icon_path(QStringLiteral("loot"), QStringLiteral("key 0"),
                                                icon_dir()),
              std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(, BadIconAnswer,
                         testing::Values(BadIcon{"Cut", QStringLiteral("cut"),
                                                 QByteArray(50000, 'x')},
                                         BadIcon{"Silent", QStringLiteral("silent"), "x"},
                                         BadIcon{"ServerError", QStringLiteral("status=500"), "x"},
                                         BadIcon{"Empty", {}, {}},
                                         BadIcon{"TooLarge", {}, QByteArray((2 << 20) + 1, 'x')}),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST_F(MasterRefresh, HashesThatAreNoFileNamesAreNotAskedFor)
{
    const QStringList hostile = {
        QStringLiteral("../x"), QStringLiteral("/tmp/x"), QStringLiteral("a/../b"),
        QStringLiteral("a.b"),  QStringLiteral("a\\b"),   QStringLiteral("C:x"),
        QStringLiteral("ä"),    QStringLiteral("a%2Fb"),  QStringLiteral("a b"),
        QString(300, u'a'),     QStringLiteral("Con"),    QStringLiteral("lpt1")};
    put_index(hostile, {QStringLiteral("C_3"), QString()});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(icons(), ElementsAre(QStringLiteral("C_3.webp")));
    EXPECT_THAT(QDir(dir_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                ElementsAre(QStringLiteral("data")));
    EXPECT_EQ(site_.icon_requests(), 1);
}

class LateIcons : public MasterRefresh, public testing::WithParamInterface<const char *> {};

TEST_P(LateIcons, DoNotHoldUpTheImportAndComeWithTheNextStart)
{
    constexpr int count = 12;
    QStringList hashes;
    for (int i = 0; i < count; ++i) {
        hashes.append(QStringLiteral("h%1").arg(i));
        site_.put_icon(hashes.back(), "icon");
    }
    put_index(hashes, {});
    site_.break_with(QLatin1StringView(GetParam()) + QStringLiteral("@/api/master/icon/"));
    EXPECT_TRUE(refresh({5000, 300, 700}));
    EXPECT_LE(site_.icon_requests(), 4);

    site_.mend();
    EXPECT_TRUE(refresh());
    EXPECT_EQ(icons().size(), count);
}

INSTANTIATE_TEST_SUITE_P(, LateIcons, testing::Values("silent", "slow=200"),
                         [](const auto &tested) { return std::string(tested.param).substr(0, 4); });

TEST_F(MasterRefresh, EndsWhenItsThreadIsToldToQuit)
{
    site_.break_with(QStringLiteral("silent@/api/master/items"));
    QThread thread;
    MasterRefreshWorker worker(site_.endpoint(), icon_dir());
    worker.moveToThread(&thread);
    QObject::connect(&thread, &QThread::started, &worker, &MasterRefreshWorker::run);
    // Counted on this thread: the worker emits on its own.
    QStringList asked;
    QList<bool> results;
    QObject::connect(&worker, &MasterRefreshWorker::statusMessage, qApp,
                     [&](const QString &text) { asked.append(text); });
    QObject::connect(&worker, &MasterRefreshWorker::masterRefreshDone, qApp,
                     [&](bool success) { results.append(success); });
    thread.start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return asked.size() == 2; }));

    thread.requestInterruption();
    thread.quit();
    EXPECT_TRUE(thread.wait(5000));
    QCoreApplication::processEvents();
    EXPECT_EQ(asked.size(), 2);
    EXPECT_THAT(results, ElementsAre(true));
}

} // namespace
} // namespace tally::data
