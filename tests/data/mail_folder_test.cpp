#include "data/import/mail_folder.h"

#include "support/temp_mails.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <filesystem>

using namespace tally;
using namespace Qt::StringLiterals;

namespace {

/// A folder on a file system that notes changes with the granularity of two seconds, and a clock.
struct CoarseFolder {
    QSet<QString> names;
    double now = 1000.0;
    double changed = 1000.0;

    void change(const QString &name)
    {
        if (!names.remove(name))
            names.insert(name);
        changed = std::floor(now / 2.0) * 2.0;
    }

    data::FolderReader reader()
    {
        data::FolderReader looks;
        looks.stamp = [this](const QString &) {
            return platform::FolderStamp{1, 2, changed, std::llround(changed * 1e9)};
        };
        looks.list = [this](const QString &) {
            return names.values();
        };
        looks.clock = [this] {
            return now;
        };
        return looks;
    }
};

QString mail(int number)
{
    return u"Persistent.Mail.%1"_s.arg(number);
}

} // namespace

RC_GTEST_PROP(MailFolder, EveryLookSeesWhatAListingWouldSee, (const std::vector<int> &steps))
{
    CoarseFolder disk;
    data::MailFolder folder(u"any"_s, disk.reader());
    QSet<QString> known;
    for (const int step : steps) {
        disk.now += std::abs(step % 97) / 20.0;
        if (step % 3 == 0)
            disk.change(mail(step % 5));
        if (step % 2 == 0)
            known = folder.names_if_changed().value_or(known);
        if (step % 2 == 0)
            RC_ASSERT(known == disk.names);
    }
}

TEST(MailFolder, AFileSystemWithoutStampsIsListedAtEachLookAndOnlyMailsCount)
{
    CoarseFolder disk;
    data::FolderReader reader = disk.reader();
    reader.stamp = [](const QString &) {
        return std::nullopt;
    };
    data::MailFolder folder(u"any"_s, reader);
    disk.names = {mail(1), u"persistent.mail.2"_s, u"Persistent.Mail"_s};
    for (int look = 0; look < 2; ++look)
        EXPECT_EQ(folder.names_if_changed(), QSet<QString>{mail(1)});
}

TEST(MailFolder, AFolderOnDiskIsSkippedWhileItRestsAndListedWhenItChanges)
{
    const test::TempMails mails;
    mails.add(mail(1), "old");
    const std::filesystem::path path(mails.path().toStdString());
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) -
                                               std::chrono::hours(1));
    if (!platform::folder_stamp(mails.path()))
        GTEST_SKIP() << "the file system of " << path << " has no stamps";
    data::MailFolder folder(mails.path());
    EXPECT_EQ(folder.names_if_changed(), QSet<QString>{mail(1)});
    EXPECT_EQ(folder.names_if_changed(), std::nullopt);
    mails.add(mail(2), "new");
    EXPECT_EQ(folder.names_if_changed(), (QSet<QString>{mail(1), mail(2)}));
    ASSERT_TRUE(QFile::remove(mails.file(mail(1))));
    EXPECT_EQ(folder.names_if_changed(), QSet<QString>{mail(2)});
}
