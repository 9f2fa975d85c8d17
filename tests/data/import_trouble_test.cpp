#include "data/import/import_pipeline.h"
#include "data/import/mail_file.h"
#include "support/log_capture.h"
#include "support/plain_connection.h"
#include "support/small_mails.h"
#include "support/temp_mails.h"
#include "support/temp_store.h"
#include "support/unprivileged.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <thread>

#include <sys/stat.h>

namespace tally::data {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// An import that meets trouble: what it counts, says and logs.
class ImportTroubles : public testing::Test {
protected:
    QString add(const QString &name, const QByteArray &content = test::fort_mail()) const
    {
        return mails_.add(u"Persistent.Mail."_s + name, content);
    }
    QString run(const QString &sql) const { return test::text_of(store_.db.connection(), sql); }
    ImportStats import(const ImportProgress &progress = {})
    {
        return import_dir(mails_.path(), raw_dir_, store_.db, progress, nullptr);
    }
    QStringList raw_names() const
    {
        return QDir(raw_dir_).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QByteArray raw(const QString &name) const
    {
        return platform::read_file(QDir(raw_dir_).filePath(u"Persistent.Mail."_s + name));
    }

    const test::TempMails mails_;
    test::TempStore store_;
    const QTemporaryDir data_;
    const QString raw_dir_ = data_.filePath(u"deep/raw"_s);
    test::LogCapture log_;
};

TEST_F(ImportTroubles, AStoreThatTakesNoMailIsNoSuccess)
{
    add(u"1"_s);
    add(u"2"_s);
    run(u"CREATE TRIGGER full BEFORE INSERT ON fort_loot BEGIN SELECT RAISE(ABORT, 'no room'); "
        "END"_s);
    const ImportStats stats = import();
    EXPECT_EQ(stats.scanned, 2);
    EXPECT_EQ(stats.errors, 0);
    EXPECT_EQ(stats.trouble.mails, 2);
    EXPECT_THAT(text_of(stats.trouble).toStdString(),
                testing::MatchesRegex("2 mails could not be stored \\(no room.*\\); \"Reimport "
                                      "mailcache...\" brings them\\."));
    const QStringList told = test::LogCapture::lines(u"is incomplete:"_s);
    ASSERT_EQ(told.size(), 1);
    EXPECT_THAT(told[0].toStdString(), HasSubstr("2 mails could not be stored (no room"));
}

TEST_F(ImportTroubles, EachErrorIsLoggedWithTheNameOfItsMail)
{
    const QStringList names = {u"1"_s, u"2"_s, u"3"_s};
    for (const QString &name : names)
        add(name);
    run(u"DROP TABLE fort_reports"_s);
    const ImportStats stats = import();
    EXPECT_EQ(stats.scanned, 3);
    EXPECT_EQ(stats.imported, 0);
    EXPECT_EQ(stats.errors, 3);
    EXPECT_EQ(stats.trouble.mails, 3);
    for (const QString &name : names)
        EXPECT_THAT(test::LogCapture::lines(u"not stored: Persistent.Mail.%1 "_s.arg(name)),
                    SizeIs(1));
}

TEST_F(ImportTroubles, AFolderThatCannotBeListedIsNoEmptyOne)
{
    add(u"1"_s);
    ASSERT_EQ(::chmod(qPrintable(mails_.path()), 0311), 0);
    const test::Unprivileged user;
    const ImportStats stats = import_dir(mails_.path(), {}, store_.db, {}, nullptr);
    EXPECT_EQ(stats.errors, 0);
    EXPECT_THAT(text_of(stats.trouble).toStdString(),
                "The folder cannot be listed (Permission denied).");
    EXPECT_THAT(test::LogCapture::lines(u"is incomplete: The folder cannot"_s), SizeIs(1));
}

TEST_F(ImportTroubles, AFolderIsFoundWhateverCharactersItsNameHas)
{
    const QString dir = data_.filePath(u"mails \uef80 \uefff"_s);
    const QString raw_dir = data_.filePath(u"raw \uef80"_s);
    const QString mail = add(u"1"_s);
    ASSERT_TRUE(QDir().mkpath(dir));
    ASSERT_TRUE(QFile::copy(mail, QDir(dir).filePath(u"Persistent.Mail.1"_s)));
    EXPECT_EQ(import_dir(dir, raw_dir, store_.db, {}, nullptr).imported, 1);
    EXPECT_TRUE(QFile::exists(QDir(raw_dir).filePath(u"Persistent.Mail.1"_s)));
}

TEST_F(ImportTroubles, ACopyOfAHalfWrittenMailIsCompletedAndAnyOtherKept)
{
    const QByteArray whole = test::fort_mail();
    add(u"torn"_s, whole.chopped(5));
    add(u"other"_s, "first version");
    import();
    add(u"torn"_s, whole);
    add(u"other"_s, "second version of a mail");
    EXPECT_EQ(import().imported, 1);
    EXPECT_EQ(raw(u"torn"_s), whole);
    EXPECT_EQ(raw(u"other"_s), "first version");
    add(u"torn"_s, whole.chopped(9));
    import();
    EXPECT_EQ(raw(u"torn"_s), whole);
}

TEST_F(ImportTroubles, WhatKilledImportsLeftOfTheirCopiesGoes)
{
    ASSERT_TRUE(QDir().mkpath(raw_dir_));
    QFile left(QDir(raw_dir_).filePath(u".part-1-1"_s));
    ASSERT_TRUE(left.open(QIODevice::WriteOnly) && left.write("half") == 4);
    left.close();
    add(u"1"_s);
    import();
    EXPECT_EQ(raw_names(), QStringList{u"Persistent.Mail.1"_s});
}

TEST_F(ImportTroubles, AFileLargerThanAnyMailIsNamedNotCopied)
{
    const QString path = add(u"large"_s, {});
    ASSERT_EQ(::truncate(qPrintable(path), MailFile::max_size + 1), 0);
    EXPECT_EQ(import().scanned, 1);
    EXPECT_THAT(raw_names(), IsEmpty());
    EXPECT_THAT(test::LogCapture::lines(path), SizeIs(1));
}

TEST_F(ImportTroubles, AStoreThatIsRemovedMeanwhileIsMissedAndNotMadeAnew)
{
    add(u"1"_s);
    const auto remove_store = [this](qint32, qint32, qint32) {
        EXPECT_TRUE(QFile::remove(store_.path));
    };
    const ImportStats stats = import(remove_store);
    EXPECT_EQ(stats.imported, 1);
    EXPECT_THAT(text_of(stats.trouble).toStdString(),
                testing::StartsWith("The store's file was removed or replaced"));
    std::string failure;
    std::thread([&] {
        failure = test::failure_of([this] { store_.db.report_exists(u"any"_s); });
    }).join();
    EXPECT_THAT(failure, testing::StartsWith("TallyDb fatal: open failed for "));
    EXPECT_FALSE(QFile::exists(store_.path));
}

} // namespace
} // namespace tally::data
