#include "platform/updater/download.h"
#include "support/file_size_limit.h"
#include "support/print_qt.h"
#include "support/unprivileged.h"
#include "support/update_site.h"

#include <QTimer>

#include <gmock/gmock.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;
using testing::StartsWith;

const QByteArray content(300'000, 'u');
const QString hash = u"8f14a5c75f79789cb8adce8815e6bc463d0c1ee069839fc713aaf862d8ad3b61"_s;

class Download : public testing::Test {
protected:
    Download() { site_.put_payload(content); }

    DownloadResult fetch(const QString &expected = hash, DownloadOptions options = {})
    {
        options.endpoint = site_.endpoint();
        return download_file(site_.url(), dest_, expected, progress_, options);
    }
    /// Fails to download. \return why.
    std::string failure(const DownloadOptions &options = {}, const QString &expected = hash)
    {
        const DownloadResult result = fetch(expected, options);
        EXPECT_FALSE(result.ok);
        EXPECT_EQ(QDir(folder_.filePath(u"updates"_s)).entryList(QDir::Files), QStringList());
        return result.error.toStdString();
    }

    test::UpdateSite site_;
    QTemporaryDir folder_;
    QString dest_ = folder_.filePath(u"updates/x.zip"_s);
    DownloadProgress progress_;
};

TEST_F(Download, TakesThePlaceOfAnOldFileAndTellsOfItsProgress)
{
    qint64 last = 0;
    progress_ = [&](qint64 done, qint64 total) {
        EXPECT_TRUE(done >= last && (done == 0 || total == content.size()));
        last = done;
    };
    ASSERT_TRUE(fetch({}).ok) << "without a hash any file will do";
    QFile changed(dest_);
    ASSERT_TRUE(changed.open(QIODevice::ReadWrite) && changed.putChar('U'));
    changed.close();
    EXPECT_FALSE(check_file(dest_, hash).ok);
    last = 0;
    const DownloadResult result = fetch(hash.toUpper());
    EXPECT_EQ(result.sha256, hash) << result.error.toStdString();
    EXPECT_EQ(platform::read_file(dest_), content);
    EXPECT_TRUE(check_file(dest_, hash).ok);
    EXPECT_EQ(last, content.size());
}

TEST_F(Download, NoLieOfTheServerLeavesAFile)
{
    for (const auto &[fault, error] :
         {std::pair("short",
                    "SHA256 mismatch: expected 8f14a5c75f79789c..., got 400e8c012ef68d6c..."),
          {"garbled", "SHA256 mismatch: "},
          {"cut", "Download failed: "},
          {"status=500", "Download failed: "},
          {"status=204", "Download failed: the server does not have the file"},
          {"redirect=http://localhost:1/x", "Download failed: "},
          {"endless", "Download failed: the file is larger than it may be"}}) {
        site_.break_with(QLatin1StringView(fault));
        EXPECT_THAT(failure({.size_limit = size_limit_for(content.size())}), StartsWith(error));
        site_.mend();
    }
    EXPECT_TRUE(fetch().ok) << "the next try is not spoilt";
    QFile::remove(dest_);
    site_.put_payload({});
    EXPECT_EQ(failure({}, {}), "Download failed: the file is empty");
}

TEST_F(Download, StaysWithHttpsAndItsAuthorities)
{
    EXPECT_FALSE(download_file(u"http://localhost:1/x"_s, dest_, {}, {}).ok);
    Endpoint stranger = site_.endpoint();
    stranger.authority_file = test::server_keys + u"/other.pem"_s;
    EXPECT_FALSE(download_file(site_.url(), dest_, {}, {}, {.endpoint = stranger}).ok);
    EXPECT_EQ(site_.requests_of(u"/updates/payload.zip"_s), 0);
}

TEST_F(Download, MayBeATenthLargerThanAnnounced)
{
    EXPECT_EQ(size_limit_for(1000), 1100);
    for (const qint64 size : {qint64(0), largest_download, largest_download * 5})
        EXPECT_EQ(size_limit_for(size), largest_download);
    failure({.size_limit = content.size() - 1});
    EXPECT_TRUE(fetch(hash, {.size_limit = content.size()}).ok);
}

TEST_F(Download, EndsWhenItIsToldOrTheTimeIsOver)
{
    site_.break_with(u"silent"_s);
    StopFlag stop = false;
    QTimer::singleShot(1, [&] { stop = true; });
    EXPECT_THAT(failure({.stop = &stop}), StartsWith("Download failed: "));
    failure({.time_limit = std::chrono::milliseconds(20)});
}

TEST_F(Download, WhatCannotBeWrittenIsTold)
{
    {
        const test::FileSizeLimit full(100'000);
        EXPECT_THAT(failure(),
                    StartsWith("Download failed: it cannot be written: there is no room"));
    }
    QDir().mkpath(dest_ + u"/in the way"_s);
    EXPECT_EQ(failure(), "Cannot rename temp to dest");
    const test::Unprivileged user;
    EXPECT_EQ(failure(), "Cannot open temp file") << "a folder of somebody else";
}

} // namespace
} // namespace tally::platform::Updater
