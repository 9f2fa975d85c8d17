#include "data/master/master_cache.h"
#include "data/master/master_refresh_worker.h"
#include "support/file_size_limit.h"
#include "support/log_capture.h"
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

using namespace Qt::StringLiterals;
using test::ReferenceSite;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr DownloadTimeouts test_timeouts{5000, 5000, 60000};

const QString index_path = u"/api/master/icons_index"_s;

QString icon_request(const QString &hash)
{
    return u"/api/master/icon/"_s + hash;
}

/// A site with all tables and the icons "a1" (in two sections), "b-2" and "C_3".
class MasterRefresh : public testing::Test {
protected:
    MasterRefresh()
    {
        MasterCache::instance().clear();
        site_.put_table(u"heroes"_s, R"({"heroes":{"7":{"name":"Ajax"}}})");
        site_.put_table(u"items"_s, R"({"items":{}})");
        site_.put_table(u"inscriptions"_s, "{}");
        site_.put_table(u"armaments"_s, R"({"formations":{"1.0":"Wedge"}})");
        site_.put_table(u"barbs"_s, R"({"types":[]})");
        put_index({u"a1"_s, u"b-2"_s}, {u"a1"_s, u"C_3"_s});
        for (const char *hash : {"a1", "b-2", "C_3"})
            site_.put_icon(QLatin1StringView(hash), QByteArray("icon ") + hash);
    }

    void put_index(const QStringList &loot, const QStringList &commanders)
    {
        const auto section = [](const QStringList &hashes) {
            QJsonObject entries;
            for (const QString &hash : hashes)
                entries.insert(u"key %1"_s.arg(entries.size()), QJsonObject{{u"hash"_s, hash}});
            return entries;
        };
        site_.put_table(u"icons_index"_s,
                        QJsonDocument(QJsonObject{{u"loot"_s, section(loot)},
                                                  {u"all_loot"_s, QJsonObject()},
                                                  {u"commanders"_s, section(commanders)}})
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

    QString icon_dir() const { return dir_.filePath(u"data/icons"_s); }
    QStringList icons() const
    {
        return QDir(icon_dir()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QByteArray icon(const QString &name) const
    {
        return platform::read_file(QDir(icon_dir()).filePath(name));
    }

    ReferenceSite site_;
    QTemporaryDir dir_;
    QStringList messages_;
    std::function<void(const QString &)> on_message_;
};

TEST_F(MasterRefresh, FetchesTablesInOrderThenTheIcons)
{
    EXPECT_TRUE(refresh());
    EXPECT_THAT(messages_, ElementsAre(u"Downloading heroes..."_s, u"Downloading items..."_s,
                                       u"Downloading inscriptions..."_s,
                                       u"Downloading armaments..."_s, u"Downloading barbs..."_s,
                                       u"Downloading icons_index..."_s, u"Downloading icons..."_s));
    EXPECT_EQ(MasterCache::instance().hero_name(7.0), u"Ajax"_s);
    EXPECT_EQ(MasterCache::instance().formation_name(1.0), u"Wedge"_s);
    EXPECT_EQ(icon(u"b-2.webp"_s), QByteArray("icon b-2"));
    EXPECT_EQ(MasterCache::instance().icon_path(u"loot"_s, u"key 1"_s, icon_dir()),
              QDir(icon_dir()).filePath(u"b-2.webp"_s));
}

TEST_F(MasterRefresh, AFailingOrOversizedTableDoesNotStopTheOthers)
{
    site_.break_with(u"status=500@/api/master/items"_s);
    site_.put_table(u"heroes"_s,
                    R"({"heroes":{"7":{"name":")" + QByteArray(16 << 20, 'x') + R"("}}})");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(MasterCache::instance().hero_name(7.0), u"H7"_s);
    EXPECT_EQ(MasterCache::instance().formation_name(1.0), u"Wedge"_s);
    EXPECT_EQ(icons().size(), 3);
}

TEST_F(MasterRefresh, FailsWithoutAnIconStepWhenNoTableArrives)
{
    for (const QString &kind :
         {u"heroes"_s, u"items"_s, u"inscriptions"_s, u"armaments"_s, u"barbs"_s, u"icons_index"_s})
        site_.break_with(u"status=500@/api/master/"_s + kind);
    EXPECT_FALSE(refresh());
    EXPECT_FALSE(messages_.contains(u"Downloading icons..."_s));
    EXPECT_EQ(site_.requests_of(index_path), 1);
    EXPECT_THAT(icons(), IsEmpty());
}

TEST_F(MasterRefresh, SucceedsWithoutIconsWhenTheirIndexFailsTheSecondTime)
{
    on_message_ = [this](const QString &text) {
        if (text == u"Downloading icons...")
            site_.break_with(u"status=500@"_s + index_path);
    };
    EXPECT_TRUE(refresh());
    EXPECT_EQ(site_.requests_of(index_path), 2);
    EXPECT_THAT(icons(), IsEmpty());
}

TEST_F(MasterRefresh, AFullDiskLeavesNoEmptyIconThatWouldNeverBeFetchedAgain)
{
    {
        const test::FileSizeLimit full_disk(0);
        EXPECT_TRUE(refresh());
        EXPECT_THAT(icons(), IsEmpty());
    }
    EXPECT_TRUE(refresh());
    EXPECT_EQ(icons().size(), 3);
}

TEST_F(MasterRefresh, AFailureIsLoggedWithItsReason)
{
    const auto logged = [this](const platform::Endpoint &endpoint) {
        const test::LogCapture log;
        MasterRefreshWorker worker(endpoint, icon_dir(), test_timeouts);
        worker.run();
        return test::LogCapture::lines(u"kind \"heroes\" failed status= "_s).join(u'\n').toStdString();
    };
    platform::Endpoint endpoint = site_.endpoint();
    endpoint.pins.clear();
    EXPECT_THAT(logged(endpoint), HasSubstr("cert_pin_mismatch (the server's key is none of"));
    endpoint = test::ReferenceSite().endpoint(); // gone at once
    EXPECT_THAT(logged(endpoint), HasSubstr("cert_pin_mismatch (Connection refused)"));
    site_.put_table(u"heroes"_s, QByteArray((16 << 20) + 1, ' '));
    EXPECT_THAT(logged(site_.endpoint()), HasSubstr("body_too_large"));
}

TEST_F(MasterRefresh, LeavesIconsThatExistAlone)
{
    refresh();
    EXPECT_EQ(site_.requests_of(icon_request(u"a1"_s)), 1) << "it is in two sections";
    site_.put_icon(u"a1"_s, "newer");
    refresh();
    EXPECT_EQ(site_.icon_requests(), 3);
    EXPECT_EQ(icon(u"a1.webp"_s), QByteArray("icon a1"));
}

struct BadIcon {
    const char *name;
    QString fault; ///< for the icon a1
    QByteArray content;
};

class BadIconAnswer : public MasterRefresh, public testing::WithParamInterface<BadIcon> {};

TEST_P(BadIconAnswer, LeavesNoFileAndTheOthersArrive)
{
    site_.put_icon(u"a1"_s, GetParam().content);
    if (!GetParam().fault.isEmpty())
        site_.break_with(GetParam().fault + u'@' + icon_request(u"a1"_s));

    EXPECT_TRUE(refresh({5000, 2000, 60000}));
    EXPECT_THAT(icons(), testing::UnorderedElementsAre(u"C_3.webp"_s, u"b-2.webp"_s));
    EXPECT_EQ(MasterCache::instance().icon_path(u"loot"_s, u"key 0"_s, icon_dir()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(, BadIconAnswer,
                         testing::Values(BadIcon{"Cut", u"cut"_s, QByteArray(50000, 'x')},
                                         BadIcon{"Silent", u"silent"_s, "x"},
                                         BadIcon{"ServerError", u"status=500"_s, "x"},
                                         BadIcon{"Empty", {}, {}},
                                         BadIcon{"TooLarge", {}, QByteArray((2 << 20) + 1, 'x')}),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST_F(MasterRefresh, HashesThatAreNoFileNamesAreNotAskedFor)
{
    const QStringList hostile = {u"../x"_s, u"/tmp/x"_s,        u"a/../b"_s, u"a.b"_s,
                                 u"a\\b"_s, u"C:x"_s,           u"ä"_s,      u"a%2Fb"_s,
                                 u"a b"_s,  QString(300, u'a'), u"Con"_s,    u"lpt1"_s};
    put_index(hostile, {u"C_3"_s, QString()});
    EXPECT_TRUE(refresh());
    EXPECT_THAT(icons(), ElementsAre(u"C_3.webp"_s));
    EXPECT_THAT(QDir(dir_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                ElementsAre(u"data"_s));
    EXPECT_EQ(site_.icon_requests(), 1);
}

class LateIcons : public MasterRefresh, public testing::WithParamInterface<const char *> {};

TEST_P(LateIcons, DoNotHoldUpTheImportAndComeWithTheNextStart)
{
    constexpr int count = 12;
    QStringList hashes;
    for (int i = 0; i < count; ++i) {
        hashes.append(u"h%1"_s.arg(i));
        site_.put_icon(hashes.back(), "icon");
    }
    put_index(hashes, {});
    site_.break_with(QLatin1StringView(GetParam()) + u"@/api/master/icon/"_s);
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
    site_.break_with(u"silent@/api/master/items"_s);
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
