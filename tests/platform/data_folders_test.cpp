#include "platform/paths/data_folders.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tally::platform {
namespace {

struct RootCase {
    QString executable_dir;
    QString root;
};

class AppRoot : public testing::TestWithParam<RootCase> {};

TEST_P(AppRoot, IsTheParentOfAFolderCalledSystemOnly)
{
    const QString drive = QDir::rootPath();
    EXPECT_EQ(app_root_of(drive + GetParam().executable_dir), drive + GetParam().root);
}

INSTANTIATE_TEST_SUITE_P(
    , AppRoot,
    testing::Values(RootCase{QStringLiteral("x/SYSTEM"), QStringLiteral("x")},
                    RootCase{QStringLiteral("x/system"), QStringLiteral("x")},
                    RootCase{QStringLiteral("x/systems"), QStringLiteral("x/systems")},
                    RootCase{QStringLiteral("system/x"), QStringLiteral("system/x")}));

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
