#include "platform/files/folder_stamp.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tally;
using namespace Qt::StringLiterals;

TEST(FolderStamp, AnotherFolderOfTheSameTimeIsToldApart)
{
    const QTemporaryDir dir;
    for (const QString &name : {u"one"_s, u"two"_s})
        ASSERT_TRUE(QDir(dir.path()).mkdir(name));
    const auto one = platform::folder_stamp(dir.filePath(u"one"_s));
    auto two = platform::folder_stamp(dir.filePath(u"two"_s));
    if (!one || !two)
        GTEST_SKIP() << "the file system of " << dir.path().toStdString() << " has no stamps";
    two->modified_nanos = one->modified_nanos;
    two->changed = one->changed;
    EXPECT_NE(one, two);
}
