#include "fake_game/roll_image.h"
#include "honor/game_memory_reader.h"
#include "platform/host/game_windows.h"
#include "platform/host/system_host.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

namespace tally::platform {
namespace {

using namespace tally::test;
using namespace Qt::StringLiterals;

constexpr int patience = 60'000; // ms

class Win32Game : public testing::Test {
protected:
    void SetUp() override
    {
        game_.start(QCoreApplication::applicationDirPath() + u"/fake_game.exe"_s, QStringList());
        ASSERT_TRUE(game_.waitForReadyRead(patience));
    }
    void TearDown() override
    {
        game_.closeWriteChannel();
        if (!game_.waitForFinished(patience))
            game_.kill();
    }

    QProcess game_;
    std::unique_ptr<Host> host_ = make_system_host();
};

TEST_F(Win32Game, ItsWindowIsFoundWithPlaceAndImage)
{
    const QList<GameWindowInfo> windows = find_game_windows(*host_);
    ASSERT_EQ(windows.size(), 1);
    EXPECT_EQ(windows[0].pid, static_cast<std::uint32_t>(game_.processId()));
    EXPECT_TRUE(windows[0].exe_path.endsWith(u"\\fake_game.exe"));
    const WindowRect rect = host_->window_rect(windows[0].hwnd);
    EXPECT_TRUE(rect.valid);
    EXPECT_EQ(rect.w, 640);
    EXPECT_EQ(rect.h, 360);
    EXPECT_TRUE(window_usable(*host_, windows[0].hwnd));

    game_.write("minimise\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window_usable(*host_, windows[0].hwnd); }, patience));
    game_.kill();
    ASSERT_TRUE(game_.waitForFinished(patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return find_game_windows(*host_).isEmpty(); }, patience));
}

TEST_F(Win32Game, ItsRollIsReadWhole)
{
    honor::GameMemoryReader reader(*host_, QString());
    reader.set_markers(QString::fromUtf8(player_name), QString::fromUtf8(first_enemy),
                       QString::fromUtf8(second_enemy));
    const auto result = reader.read_honor_roll(QString::fromUtf8(player_name));
    ASSERT_TRUE(result.has_value());
    const std::vector<RollPerson> people = roll_people(300, 120);
    ASSERT_EQ(result->entries.size(), people.size());
    for (size_t i = 0; i < people.size(); ++i) {
        EXPECT_EQ(result->entries[i].name.toStdString(), people[i].name);
        EXPECT_EQ(result->entries[i].honor, static_cast<std::int64_t>(people[i].honor));
    }
    EXPECT_EQ(result->own_rank, 120);
}

} // namespace
} // namespace tally::platform
