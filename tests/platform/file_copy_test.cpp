#include "platform/files/exact_files.h"
#include "platform/files/file_copy.h"
#include "platform/files/whole_file.h"
#include "support/file_size_limit.h"
#include "support/print_qt.h"

#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tally::platform {
namespace {

using namespace Qt::StringLiterals;

class FileCopies : public testing::Test {
protected:
    QString path(const char *name) const { return dir_.filePath(text_of_native_name(name)); }
    void write(const QString &path, const QByteArray &content) const
    {
        ASSERT_EQ(write_whole_file(dir_.filePath(u"new"_s), content), std::nullopt);
        ASSERT_EQ(
            std::rename(qPrintable(dir_.filePath(u"new"_s)), native_name_of_text(path).constData()),
            0);
    }
    QStringList names() const { return regular_file_names(dir_.path()); }

    QTemporaryDir dir_;
    QString from_ = path("from\xff");
    QString to_ = path("to\xff");
};

TEST_F(FileCopies, AreWholeAndNeverReplaceOne)
{
    write(from_, "first");
    EXPECT_TRUE(copy_file(from_, to_));
    write(from_, "second");
    EXPECT_FALSE(copy_file(from_, to_));
    EXPECT_EQ(read_file(to_), "first");
    EXPECT_FALSE(copy_file(path("missing"), path("copy")));
    EXPECT_FALSE(copy_file(from_, path("missing/copy")));
    ASSERT_EQ(::mkfifo(qPrintable(path("pipe")), 0600), 0);
    EXPECT_FALSE(copy_file(path("pipe"), path("copy")));
    {
        const test::FileSizeLimit full_disk(2);
        EXPECT_FALSE(copy_file(from_, path("copy")));
    }
    EXPECT_EQ(names().size(), 2) << "a failed copy must leave nothing";
}

TEST_F(FileCopies, OnlyOneThatWasTakenTooEarlyIsCompleted)
{
    struct Case {
        QByteArray copy;
        QByteArray file;
        bool is_torn;
    };
    const QByteArray large(3 << 20, 'x');
    const Case cases[] = {{"whole", "whole", false},
                          {"who", "whole", true},
                          {"", "whole", true},
                          {"whose", "whole mail", false},
                          {"whole mail", "who", false},
                          {large, large + "end", true},
                          {large + "y", large + "xx", false}};
    for (const Case &tested : cases) {
        write(to_, tested.copy);
        write(from_, tested.file);
        EXPECT_EQ(complete_copy(from_, to_), tested.is_torn) << tested.copy.left(20).constData();
        EXPECT_TRUE(read_file(to_) == (tested.is_torn ? tested.file : tested.copy));
    }
    EXPECT_FALSE(complete_copy(from_, path("missing")));
    EXPECT_EQ(names().size(), 2);
}

TEST_F(FileCopies, WhatAKilledOneLeftGoesAndWhatIsBeingWrittenStays)
{
    // The copy of a file without end: it is being written until its process is killed.
    const QString endless = path("endless");
    write(endless, {});
    ASSERT_EQ(::truncate(qPrintable(endless), qint64{1} << 36), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        copy_file(endless, to_);
        ::_exit(0);
    }
    QString partial;
    ASSERT_TRUE(QTest::qWaitFor([&] {
        partial = names().filter(u".part-"_s).value(0);
        return file_stamp(dir_.filePath(partial)).value_or(FileStamp{}).size > 0;
    }));
    remove_abandoned_copies(dir_.path());
    EXPECT_EQ(names(), (QStringList{partial, u"endless"_s}));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    remove_abandoned_copies(dir_.path());
    EXPECT_EQ(names(), QStringList{u"endless"_s});
}

TEST(WholeFile, AFullDiskLeavesWhatWasThere)
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(u"file"_s);
    ASSERT_EQ(write_whole_file(path, "good"), std::nullopt);
    for (const int size : {5, 5000, 500'000}) { // less and more than Qt keeps back
        const test::FileSizeLimit full_disk(size / 2);
        const auto failure = write_whole_file(path, QByteArray(size, 'x'));
        EXPECT_TRUE(failure && !failure->isEmpty()) << size;
        EXPECT_EQ(read_file(path), "good") << size;
    }
    EXPECT_EQ(regular_file_names(dir.path()).size(), 1);
    EXPECT_EQ(write_whole_file(path, "better"), std::nullopt);
    EXPECT_EQ(read_file(path), "better");
    EXPECT_TRUE(write_whole_file(dir.filePath(u"missing/file"_s), "x"));
}

} // namespace
} // namespace tally::platform
