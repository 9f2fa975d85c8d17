#include "platform/paths/data_folders.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tally::platform {
namespace {

TEST(AppRoot, IsTheParentOfAFolderCalledSystemOnly)
{
    const QString drive = QDir::rootPath();
    for (const auto &[executable_dir, root] : {std::pair("x/SYSTEM", "x"),
                                               {"x/system", "x"},
                                               {"x/systems", "x/systems"},
                                               {"system/x", "system/x"}})
        EXPECT_EQ(app_root_of(drive + QLatin1StringView(executable_dir)),
                  drive + QLatin1StringView(root));
}

TEST(MailcacheDefault, IsTheFirstCandidateThatExistsElseTheFirst)
{
    const QTemporaryDir dir;
    const QString there = dir.path();
    const QString missing = dir.filePath(QStringLiteral("missing"));
    const QString also_missing = dir.filePath(QStringLiteral("also missing"));
    EXPECT_EQ(first_existing_dir({missing, there}), there);
    EXPECT_EQ(first_existing_dir({missing, also_missing}), missing);
    EXPECT_EQ(first_existing_dir({}), QString());
    EXPECT_FALSE(default_mailcache_dir().isEmpty());
}

} // namespace
} // namespace tally::platform
