#include "platform/updater/version_record.h"
#include "support/log_capture.h"
#include "support/print_qt.h"
#include "support/program_run.h"
#include "support/update_site.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QTimer>

#include <gtest/gtest.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;
using test::UpdateSite;

TEST(IsNewer, ComparesTextsAndNothingWithNothing)
{
    EXPECT_TRUE(is_newer(u"v2.0-alfa.073"_s, u"v2.0-alfa.072"_s));
    EXPECT_TRUE(is_newer(u"v9"_s, u"v10"_s)) << "as a text it is";
    EXPECT_TRUE(is_newer(u"v2a"_s, u"v2A"_s));
    EXPECT_FALSE(is_newer(u"v2"_s, u"v2"_s));
    EXPECT_FALSE(is_newer(u""_s, u"v2"_s));
    EXPECT_FALSE(is_newer(u"v2"_s, u""_s));
}

const QJsonObject good = {
    {u"version"_s, u"v3"_s},
    {u"download_url"_s, u"https://a.example/x.exe"_s},
    {u"payload_url"_s, u""_s},
    {u"size"_s, 1000},
};

struct RecordCase {
    QString key;
    QJsonValue value;
    bool counts;
};

TEST(VersionRecord, CountsOnlyIfWhatItSaysMayEndInAScript)
{
    EXPECT_EQ(record_fault(good, {}), std::nullopt);
    for (const RecordCase &tested : {
             RecordCase{u"version"_s, QJsonValue(), false},
             {u"version"_s, 3, false},
             {u"version"_s, u""_s, false},
             {u"version"_s, u"v3 & calc"_s, false},
             {u"version"_s, u"v3\n"_s, false},
             {u"version"_s, u"../v3"_s, false},
             {u"version"_s, u"vü"_s, false},
             {u"version"_s, QString(64, u'v'), true},
             {u"version"_s, QString(65, u'v'), false},
             {u"download_url"_s, u"http://a.example/x.exe"_s, false},
             {u"download_url"_s, u"file:///etc/passwd"_s, false},
             {u"download_url"_s, u"https:///x"_s, false},
             {u"download_url"_s, 7, false},
             {u"payload_url"_s, u"ftp://a.example/x.zip"_s, false},
             {u"payload_url"_s, QJsonArray({1}), false},
             {u"released"_s, 5, true},
             {u"size"_s, u"big"_s, true},
             {u"news"_s, u"whatever"_s, true},
         }) {
        QJsonObject record = good;
        record[tested.key] = tested.value;
        EXPECT_EQ(!record_fault(record, {}), tested.counts)
            << tested.key.toStdString() << " " << tested.value.toVariant().toString().toStdString();
    }
}

TEST(VersionRecord, NamesTheZipWhereThereIsOneAndTheExecutableOtherwise)
{
    QJsonObject record = good;
    EXPECT_EQ(update_file(record).form, UpdateForm::Executable);
    EXPECT_EQ(update_file(record).url, u"https://a.example/x.exe"_s);
    EXPECT_EQ(update_file(record).size, 1000);
    record[u"payload_url"_s] = u"https://a.example/x.zip"_s;
    record[u"sha256"_s] = u"of the other"_s;
    EXPECT_EQ(update_file(record).form, UpdateForm::Payload);
    EXPECT_EQ(update_file(record).url, u"https://a.example/x.zip"_s);
    for (const auto &[hash, is_usable] : {std::pair(QJsonValue(), true),
                                          {u""_s, true},
                                          {QString(64, u'a'), true},
                                          {QString(64, u'F'), true},
                                          {QString(63, u'a'), false},
                                          {QString(64, u'g'), false},
                                          {QString(64, u'a') + u'\n', false},
                                          {12, false}}) {
        record[u"payload_sha256"_s] = hash;
        EXPECT_EQ(update_file(record).has_usable_hash(), is_usable);
    }
    for (const QJsonValue &size : {QJsonValue(0), QJsonValue(-5), QJsonValue(1e300)}) {
        record[u"size"_s] = size;
        EXPECT_LT(update_file(record).size, 1);
    }
}

TEST(SignedRecord, CountsAsItWasSignedAndInNoOtherWay)
{
    const QTemporaryDir folder;
    QFile payload(folder.filePath(u"payload.zip"_s));
    ASSERT_TRUE(payload.open(QIODevice::WriteOnly));
    payload.write("PK and so on");
    payload.close();
    QProcess sign;
    sign.start(QStringLiteral(TALLY_SCRIPTS "/sign-update"),
               {test::server_keys + u"/update.key"_s, u"v3"_s, u"https://a.example/payload.zip"_s,
                payload.fileName()});
    ASSERT_TRUE(sign.waitForFinished());
    const QJsonObject record = QJsonDocument::fromJson(sign.readAllStandardOutput()).object();
    const QByteArray key = UpdateSite().strict_endpoint().update_key;
    ASSERT_EQ(key.size(), 44);
    EXPECT_EQ(record_fault(record, key), std::nullopt);
    EXPECT_EQ(record[u"payload_sha256"_s].toString().toLatin1(), test::sha256_of("PK and so on"));

    const auto is_refused = [&](const QString &field, const QJsonValue &value) {
        QJsonObject changed = record;
        changed[field] = value;
        return record_fault(changed, key).has_value() && !record_fault(changed, {});
    };
    EXPECT_TRUE(is_refused(u"version"_s, u"v4"_s));
    EXPECT_TRUE(is_refused(u"payload_url"_s, u"https://b.example/payload.zip"_s));
    EXPECT_TRUE(is_refused(u"payload_sha256"_s, QString(64, u'a')));
    EXPECT_TRUE(is_refused(u"payload_sha256"_s, QJsonValue()));
    EXPECT_TRUE(is_refused(u"signature"_s, QJsonValue()));
    EXPECT_TRUE(is_refused(u"signature"_s, u"no base64!"_s));
    EXPECT_TRUE(is_refused(u"signature"_s, QString::fromLatin1(QByteArray(64, 'x').toBase64())));
    // The other form, unsigned, beside the one that is signed.
    QJsonObject other = record;
    other[u"payload_url"_s] = u""_s;
    other[u"download_url"_s] = u"https://a.example/x.exe"_s;
    other[u"sha256"_s] = QString(64, u'a');
    EXPECT_TRUE(record_fault(other, key).has_value());
    EXPECT_TRUE(record_fault(record, "AAAA").has_value());
}

TEST(FetchVersionInfo, GivesTheRecordWithAllItsKeys)
{
    const UpdateSite site;
    site.put_record(good);
    EXPECT_EQ(fetch_version_info(site.endpoint()), good);
    EXPECT_EQ(fetch_version_info(site.strict_endpoint()), std::nullopt) << "it is not signed";
}

struct AnswerCase {
    const char *body;
    QString fault;
};

TEST(FetchVersionInfo, ASillyAnswerIsNone)
{
    const test::LogCapture log;
    for (const AnswerCase &tested : {AnswerCase{"{}", {}},
                                     {"[]", {}},
                                     {"{\"version\":", {}},
                                     {"", {}},
                                     {R"({"version": {"a": 1}})", {}},
                                     {R"({"version": "v3"})", u"status=500"_s},
                                     {R"({"version": "v3"})", u"cut"_s},
                                     {R"({"version": "v3"})", u"endless"_s},
                                     {R"({"version": "v3"})", u"redirect=http://localhost:1/"_s}}) {
        UpdateSite site;
        site.put(u"version.json"_s, tested.body);
        if (!tested.fault.isEmpty())
            site.break_with(tested.fault);
        EXPECT_EQ(fetch_version_info(site.endpoint()), std::nullopt) << tested.body;
    }
    EXPECT_EQ(test::LogCapture::lines(u"version record"_s).size(), 9) << "each says why";
}

TEST(FetchVersionInfo, ASilentServerHoldsUpForTheTimeLimitOnly)
{
    const test::LogCapture log;
    UpdateSite site;
    site.break_with(u"silent"_s);
    bool events_are_served = false;
    QTimer::singleShot(1, qApp, [&] { events_are_served = true; });
    EXPECT_EQ(fetch_version_info(site.endpoint(), {.time_limit = std::chrono::milliseconds(50)}),
              std::nullopt);
    EXPECT_TRUE(events_are_served);

    StopFlag stop = false;
    QTimer::singleShot(1, qApp, [&] { stop = true; });
    EXPECT_EQ(
        fetch_version_info(site.endpoint(), {.time_limit = std::chrono::hours(1), .stop = &stop}),
        std::nullopt);
}

} // namespace
} // namespace tally::platform::Updater
