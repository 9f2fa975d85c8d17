#include "platform/updater/version_record.h"
#include "support/log_capture.h"
#include "support/print_qt.h"
#include "support/program_run.h"
#include "support/update_site.h"

#include <gtest/gtest.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;
using test::UpdateSite;

TEST(IsNewer, ComparesTextsAndNothingWithNothing)
{
    EXPECT_TRUE(is_newer(u"v9"_s, u"v10"_s)) << "as a text it is";
    for (const auto &[a, b] : {std::pair(u"v2"_s, u"v2"_s), {u""_s, u"v2"_s}, {u"v2"_s, u""_s}})
        EXPECT_FALSE(is_newer(a, b));
}

const QJsonObject good = {{u"version"_s, u"v3"_s},
                          {u"download_url"_s, u"https://a.example/x.exe"_s},
                          {u"payload_url"_s, u""_s},
                          {u"size"_s, 1000}};

TEST(VersionRecord, CountsOnlyIfWhatItSaysMayEndInAScript)
{
    for (const auto &[key, value, counts] :
         std::initializer_list<std::tuple<QString, QJsonValue, bool>>{
             {u"version"_s, {}, false},
             {u"version"_s, 3, false},
             {u"version"_s, u"v3 & calc"_s, false},
             {u"version"_s, u"v3\n"_s, false},
             {u"version"_s, u"vü"_s, false},
             {u"version"_s, QString(64, u'v'), true},
             {u"version"_s, QString(65, u'v'), false},
             {u"download_url"_s, u"http://a.example/x.exe"_s, false},
             {u"download_url"_s, u"file:///etc/passwd"_s, false},
             {u"download_url"_s, 7, false},
             {u"payload_url"_s, u"ftp://a.example/x.zip"_s, false},
             {u"size"_s, u"big"_s, true},
         }) {
        QJsonObject record = good;
        record[key] = value;
        EXPECT_EQ(!record_fault(record, {}), counts) << key.toStdString();
    }
}

TEST(VersionRecord, NamesTheZipWhereThereIsOneAndTheExecutableOtherwise)
{
    QJsonObject record = good;
    EXPECT_EQ(update_file(record).form, UpdateForm::Executable);
    record[u"payload_url"_s] = u"https://a.example/x.zip"_s;
    EXPECT_EQ(update_file(record).form, UpdateForm::Payload);
    for (const auto &[hash, is_usable] :
         std::initializer_list<std::pair<QJsonValue, bool>>{{{}, true},
                                                            {u""_s, true},
                                                            {QString(64, u'F'), true},
                                                            {QString(63, u'a'), false},
                                                            {QString(64, u'g'), false},
                                                            {QString(64, u'a') + u'\n', false},
                                                            {12, false}}) {
        record[u"payload_sha256"_s] = hash;
        EXPECT_EQ(update_file(record).has_usable_hash(), is_usable);
    }
    record[u"size"_s] = 1e300;
    EXPECT_LT(update_file(record).size, 1);
}

TEST(SignedRecord, CountsAsItWasSignedAndInNoOtherWay)
{
    QProcess sign;
    sign.start(QStringLiteral(TALLY_SCRIPTS "/sign-update"),
               {test::server_keys + u"/update.key"_s, u"v3"_s, u"https://a.example/x"_s,
                test::server_keys + u"/pin.txt"_s});
    ASSERT_TRUE(sign.waitForFinished());
    const QJsonObject record = QJsonDocument::fromJson(sign.readAllStandardOutput()).object();
    const QByteArray key = UpdateSite().endpoint(true).update_key;
    EXPECT_EQ(record_fault(record, key), std::nullopt);
    EXPECT_NE(record_fault(record, "AAAA"), std::nullopt);
    for (const auto &[field, value] : std::initializer_list<std::pair<QString, QJsonValue>>{
             {u"version"_s, u"v4"_s},
             {u"download_url"_s, u"https://b.example/x"_s},
             {u"payload_url"_s, u"https://a.example/x"_s},
             {u"sha256"_s, QString(64, u'a')},
             {u"sha256"_s, {}},
             {u"signature"_s, {}},
             {u"signature"_s, u"no base64!"_s},
             {u"signature"_s, QString::fromLatin1(QByteArray(64, 'x').toBase64())}}) {
        QJsonObject changed = record;
        changed[field] = value;
        EXPECT_NE(record_fault(changed, key), std::nullopt) << field.toStdString();
        EXPECT_EQ(record_fault(changed, {}), std::nullopt);
    }
}

TEST(FetchVersionInfo, GivesTheRecordWithAllItsKeysOrNone)
{
    const test::LogCapture log;
    UpdateSite site;
    site.put_record(good);
    EXPECT_EQ(fetch_version_info(site.endpoint()), good);
    EXPECT_EQ(fetch_version_info(site.endpoint(true)), std::nullopt) << "it is not signed";
    for (const char *fault : {"status=500", "cut", "endless", "redirect=http://localhost:1/"}) {
        site.break_with(QLatin1StringView(fault));
        EXPECT_EQ(fetch_version_info(site.endpoint()), std::nullopt) << fault;
        site.mend();
    }
    for (const char *body : {"{}", "[]", "{\"version\":", "", R"({"version": {"a": 1}})"}) {
        site.put(u"version.json"_s, body);
        EXPECT_EQ(fetch_version_info(site.endpoint()), std::nullopt) << body;
    }
    EXPECT_EQ(test::LogCapture::lines(u"version record"_s).size(), 10) << "each says why";
}

} // namespace
} // namespace tally::platform::Updater
