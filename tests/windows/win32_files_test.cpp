#include "platform/files/exact_files.h"
#include "platform/files/file_copy.h"
#include "platform/files/file_win32.h"
#include "platform/files/whole_file.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tally::platform {
namespace {

using namespace Qt::StringLiterals;

TEST(Win32Files, AHiddenMailIsListedToo)
{
    const QTemporaryDir dir;
    for (const QString &name : {u"a"_s, u"b"_s})
        ASSERT_FALSE(write_whole_file(dir.filePath(name), "mail"));
    ASSERT_TRUE(
        SetFileAttributesW(win32_path(dir.filePath(u"b"_s)).c_str(), FILE_ATTRIBUTE_HIDDEN));
    EXPECT_EQ(regular_file_names(dir.path()), QStringList({u"a"_s, u"b"_s}));
}

TEST(Win32Files, AMailIsReadAndCopiedWhileItsWriterHoldsItOpen)
{
    const QTemporaryDir dir;
    const QString mail = dir.filePath(u"mail"_s);
    ASSERT_FALSE(write_whole_file(mail, "mail"));
    HANDLE writer = CreateFileW(win32_path(mail).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
    EXPECT_EQ(read_file(mail), "mail");
    EXPECT_TRUE(copy_file(mail, dir.filePath(u"copy"_s)));
    CloseHandle(writer);
}

TEST(Win32Files, PathsBeyond260CharactersAreWrittenListedAndRead)
{
    const QTemporaryDir dir;
    const QString deep =
        dir.filePath(u"Bücher 王/"_s + QString(120, u'x') + u'/' + QString(120, u'y'));
    ASSERT_TRUE(QDir().mkpath(deep));
    const QString file = deep + u"/mail"_s;
    ASSERT_FALSE(write_whole_file(file, "mail"));
    EXPECT_EQ(read_file(file), "mail");
    EXPECT_TRUE(copy_file(file, deep + u"/copy"_s));
    EXPECT_EQ(regular_file_names(deep), QStringList({u"copy"_s, u"mail"_s}));
}

} // namespace
} // namespace tally::platform
