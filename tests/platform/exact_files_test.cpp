#include "platform/files/exact_files.h"
#include "platform/files/folder_stamp.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdio>

#include <sys/stat.h>

namespace tally::platform {
namespace {

void write(const QByteArray &path, const char *content)
{
    std::FILE *file = std::fopen(path.constData(), "wb");
    ASSERT_NE(file, nullptr);
    std::fputs(content, file);
    std::fclose(file);
}

RC_GTEST_PROP(NativeName, TextLeadsBackToTheBytes, (const std::string &bytes))
{
    const QByteArray name = QByteArray::fromStdString(bytes);
    RC_ASSERT(native_name_of_text(text_of_native_name(name)) == name);
}

TEST(NativeName, KeepsWhatIsUtf8AndTellsTheRestApart)
{
    EXPECT_EQ(text_of_native_name("Mail.ż€😀"), QStringLiteral("Mail.ż€😀"));
    EXPECT_NE(text_of_native_name("Mail.\xff"), text_of_native_name("Mail.\xfe"));
    // A name that holds the very character that stands for a stray byte.
    EXPECT_NE(text_of_native_name("Mail.\xff"), text_of_native_name("Mail.\xee\xbf\xbf"));
    EXPECT_TRUE(text_of_native_name("Mail.\xff").startsWith(QStringLiteral("Mail.")));
}

TEST(RegularFiles, AreListedByNameWithoutFoldersAndLinks)
{
    const QTemporaryDir dir;
    const QByteArray folder = dir.path().toLocal8Bit() + '/';
    write(folder + "b", "2");
    write(folder + "a\xff", "1");
    QFile::link(dir.filePath(QStringLiteral("b")), dir.filePath(QStringLiteral("link")));
    QDir(dir.path()).mkdir(QStringLiteral("folder"));

    const QStringList names = regular_file_names(dir.path());
    ASSERT_EQ(names.size(), 2);
    EXPECT_EQ(native_name_of_text(names[0]), "a\xff");
    EXPECT_EQ(names[1], QStringLiteral("b"));
    EXPECT_EQ(read_file(dir.filePath(names[0])), "1");
    EXPECT_TRUE(regular_file_names(dir.filePath(QStringLiteral("missing"))).isEmpty());
}

TEST(InputFile, APipeIsEmptyAndHoldsNobodyUp)
{
    const QTemporaryDir dir;
    const QString pipe = dir.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(native_name_of_text(pipe).constData(), 0600), 0);
    EXPECT_EQ(read_file(pipe), "");
}

TEST(FolderListing, SaysWhyNamesAreMissing)
{
    const QTemporaryDir dir;
    EXPECT_EQ(list_folder(dir.path()).failure, QString());
    EXPECT_NE(list_folder(dir.filePath(QStringLiteral("missing"))).failure, QString());
}

TEST(ExactPath, FindsAFolderThatHoldsACharacterThatStandsForAStrayByte)
{
    const QTemporaryDir root;
    const QString dir = root.filePath(QStringLiteral("mails \uef80\uefff"));
    ASSERT_TRUE(QDir().mkpath(dir));
    write(QFile::encodeName(dir) + "/mail", "1");
    EXPECT_EQ(regular_file_names(exact_path(dir)), QStringList(QStringLiteral("mail")));
    EXPECT_EQ(exact_path(root.path()), root.path());
}

TEST(FileId, TellsAFileFromItsReplacement)
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("file"));
    const QString other = dir.filePath(QStringLiteral("other"));
    write(native_name_of_text(path), "1");
    write(native_name_of_text(other), "1");
    const auto id = file_id(path);
    ASSERT_TRUE(id);
    write(native_name_of_text(path), "other content");
    EXPECT_EQ(file_id(path), id);
    ASSERT_EQ(std::rename(qPrintable(other), qPrintable(path)), 0);
    EXPECT_NE(file_id(path), id);
    EXPECT_EQ(file_id(other), std::nullopt);
}

TEST(FolderStamp, AnotherFolderOfTheSameTimeIsToldApart)
{
    const QTemporaryDir dir;
    for (const QString &name : {QStringLiteral("one"), QStringLiteral("two")})
        ASSERT_TRUE(QDir(dir.path()).mkdir(name));
    const auto one = folder_stamp(dir.filePath(QStringLiteral("one")));
    auto two = folder_stamp(dir.filePath(QStringLiteral("two")));
    if (!one || !two)
        GTEST_SKIP() << "the file system of " << dir.path().toStdString() << " has no stamps";
    two->modified_nanos = one->modified_nanos;
    two->changed = one->changed;
    EXPECT_NE(one, two);
}

} // namespace
} // namespace tally::platform
