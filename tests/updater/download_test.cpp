#include "platform/updater/download.h"
#include "support/file_size_limit.h"
#include "support/print_qt.h"
#include "support/unprivileged.h"
#include "support/update_site.h"

#include <QCoreApplication>
#include <QTimer>

#include <gmock/gmock.h>

namespace tally::platform::Updater {
namespace {

using namespace Qt::StringLiterals;
using test::UpdateSite;
using testing::StartsWith;

const QByteArray content(300'000, 'u');
const QString name = u"payload.zip"_s;

class Download : public testing::Test {
protected:
    Download() { site_.put_file(name, content); }

    DownloadResult fetch(const QString &hash = {}, DownloadOptions options = {})
    {
        options.endpoint = site_.endpoint();
        return download_file(site_.url(name), dest_, hash, progress_, options);
    }
    /// Fails to download. \return why.
    std::string failure(const QString &hash = {}, const DownloadOptions &options = {})
    {
        const DownloadResult result = fetch(hash, options);
        EXPECT_FALSE(result.ok);
        EXPECT_EQ(QDir(QFileInfo(dest_).path()).entryList(QDir::Files | QDir::Hidden),
                  QStringList());
        return result.error.toStdString();
    }

    UpdateSite site_;
    QTemporaryDir folder_;
    QString dest_ = folder_.filePath(u"updates/x.zip"_s);
    DownloadProgress progress_;
};

TEST_F(Download, TakesThePlaceOfAnOldFileAndTellsOfItsProgress)
{
    qint64 last = 0;
    progress_ = [&](qint64 done, qint64 total) {
        EXPECT_GE(done, last);
        EXPECT_TRUE(done == 0 || total == content.size());
        last = done;
    };
    QDir().mkpath(QFileInfo(dest_).path());
    QFile old(dest_);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    const DownloadResult result = fetch(QString::fromLatin1(test::sha256_of(content)).toUpper());
    EXPECT_EQ(result.error, QString());
    ASSERT_TRUE(result.ok);
    EXPECT_EQ(result.sha256.toLatin1(), test::sha256_of(content));
    EXPECT_EQ(platform::read_file(dest_), content);
    EXPECT_EQ(last, content.size());

    EXPECT_TRUE(check_file(dest_, result.sha256).ok);
    QFile changed(dest_);
    ASSERT_TRUE(changed.open(QIODevice::ReadWrite));
    changed.putChar('U');
    changed.close();
    EXPECT_FALSE(check_file(dest_, result.sha256).ok);
}

TEST_F(Download, AWrongHashIsToldByBothBeginnings)
{
    const std::string got = test::sha256_of(content).left(16).toStdString();
    EXPECT_EQ(failure(QString(64, u'A')),
              "SHA256 mismatch: expected AAAAAAAAAAAAAAAA..., got " + got + "...");
}

struct LieCase {
    const char *fault;
    const char *error; ///< how it begins
};

TEST_F(Download, NoLieOfTheServerLeavesAFile)
{
    for (const LieCase &tested : {
             LieCase{"short", "SHA256 mismatch: "},
             {"garbled", "SHA256 mismatch: "},
             {"cut", "Download failed: "},
             {"status=500", "Download failed: "},
             {"status=204", "Download failed: the server does not have the file"},
             {"redirect=http://localhost:1/x", "Download failed: "},
             {"redirect=/updates/none", "Download failed: "},
             {"endless", "Download failed: the file is larger than it may be"},
         }) {
        site_.break_with(QLatin1StringView(tested.fault) + u"@/updates/payload"_s);
        EXPECT_THAT(failure(QString::fromLatin1(test::sha256_of(content)),
                            {.size_limit = size_limit_for(content.size())}),
                    StartsWith(tested.error))
            << tested.fault;
        site_.mend();
    }
    site_.put_file(name, {});
    EXPECT_EQ(failure(), "Download failed: the file is empty");
    site_.put_file(name, content);
    EXPECT_TRUE(fetch().ok) << "the next try is not spoilt";
}

TEST_F(Download, StaysWithHttps)
{
    EXPECT_THAT(download_file(u"http://localhost:1/x"_s, dest_, {}, {}).error.toStdString(),
                StartsWith("Download failed: "));
    Endpoint stranger = site_.endpoint();
    stranger.authority_file = test::server_keys + u"/other.pem"_s;
    EXPECT_THAT(
        download_file(site_.url(name), dest_, {}, {}, {.endpoint = stranger}).error.toStdString(),
        StartsWith("Download failed: "));
    EXPECT_EQ(site_.requests_of(u"/updates/"_s + name), 0);
}

TEST_F(Download, MayBeATenthLargerThanAnnounced)
{
    EXPECT_EQ(size_limit_for(1000), 1100);
    for (const qint64 size : {qint64(0), qint64(-1), largest_download, largest_download * 5})
        EXPECT_EQ(size_limit_for(size), largest_download);
    EXPECT_TRUE(fetch({}, {.size_limit = content.size()}).ok);
    QFile::remove(dest_);
    failure({}, {.size_limit = content.size() - 1});
}

TEST_F(Download, EndsWhenItIsTold)
{
    site_.break_with(u"silent"_s);
    StopFlag stop = false;
    QTimer::singleShot(1, qApp, [&] { stop = true; });
    EXPECT_THAT(failure({}, {.stop = &stop}), StartsWith("Download failed: "));
    failure({}, {.time_limit = std::chrono::milliseconds(20)});
}

TEST_F(Download, AFullDiskIsToldAndLeavesNothing)
{
    const test::FileSizeLimit full(100'000);
    EXPECT_THAT(failure(), StartsWith("Download failed: it cannot be written: there is no room"));
}

TEST_F(Download, AFolderThatCannotBeWrittenIsTold)
{
    QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::ExeOwner);
    {
        const test::Unprivileged user;
        EXPECT_EQ(failure(), "Cannot open temp file");
    }
    QFile::setPermissions(folder_.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QDir().mkpath(dest_ + u"/in the way"_s);
    EXPECT_EQ(failure(), "Cannot rename temp to dest");
}

} // namespace
} // namespace tally::platform::Updater
