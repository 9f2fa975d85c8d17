#include "data/import/import_pipeline.h"
#include "data/store/tally_db.h"
#include "platform/files/exact_files.h"
#include "platform/files/file_win32.h"
#include "platform/files/whole_file.h"
#include "sample_mails.h"

#include <QDir>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace tally::data {
namespace {

using namespace Qt::StringLiterals;

TEST(Win32Import, AMailThatAnotherProgramHoldsIsTakenByTheNextImport)
{
    const QTemporaryDir dir;
    const QString mails = dir.filePath(u"mails"_s);
    const QString raw = dir.filePath(u"raw"_s);
    ASSERT_TRUE(QDir().mkpath(mails));
    const QString mail = mails + u"/Persistent.Mail.1"_s;
    ASSERT_FALSE(platform::write_whole_file(mail, sample::sample_chain_mail(1)));
    TallyDb db(dir.filePath(u"tally.db"_s));
    db.init_schema();
    {
        const platform::Win32File holder(CreateFileW(platform::win32_path(mail).c_str(),
                                                     GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                                                     nullptr));
        ASSERT_NE(holder.get(), INVALID_HANDLE_VALUE);
        EXPECT_EQ(import_dir(mails, raw, db, {}, nullptr).imported, 0);
    }
    EXPECT_EQ(import_dir(mails, raw, db, {}, nullptr).imported, 1);
    EXPECT_EQ(platform::read_file(raw + u"/Persistent.Mail.1"_s), sample::sample_chain_mail(1));
}

TEST(Win32Store, LiesBeyond260CharactersToo)
{
    const QTemporaryDir dir;
    const QString deep =
        dir.filePath(u"Bücher 王/"_s + QString(120, u'x') + u'/' + QString(120, u'y'));
    ASSERT_TRUE(QDir().mkpath(deep));
    TallyDb db(deep + u"/tally.db"_s);
    db.init_schema();
    // Another thread's connection asks for the file that the first has opened.
    const std::unique_ptr<QThread> other(
        QThread::create([&db] { db.set_setting(u"theme"_s, u"light"_s); }));
    other->start();
    ASSERT_TRUE(other->wait());
    EXPECT_EQ(db.get_setting(u"theme"_s), u"light"_s);
}

} // namespace
} // namespace tally::data
