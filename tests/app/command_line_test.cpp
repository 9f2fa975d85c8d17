#include "app/console/command_line.h"

#include <gtest/gtest.h>

#include <vector>

namespace tally::app {
namespace {

struct WalkCase {
    std::vector<const char *> arguments;
    Mode mode;
    const char *folder = "";
};

class CommandLine : public testing::TestWithParam<WalkCase> {};

TEST_P(CommandLine, FirstArgumentThatNamesAModeDecides)
{
    const Command command = parse_command_line(GetParam().arguments);
    EXPECT_EQ(command.mode, GetParam().mode);
    EXPECT_EQ(command.folder, GetParam().folder);
    if (command.mode == Mode::import_only) {
        EXPECT_EQ(command.folder, GetParam().arguments.at(command.folder_at));
    }
}

INSTANTIATE_TEST_SUITE_P(
    , CommandLine,
    testing::Values(WalkCase{{}, Mode::graphical}, WalkCase{{"--unknown", "word"}, Mode::graphical},
                    WalkCase{{"--HELP"}, Mode::graphical}, WalkCase{{"-h"}, Mode::help},
                    WalkCase{{"--help", "--test-db"}, Mode::help},
                    WalkCase{{"--test-db", "--help"}, Mode::test_db},
                    WalkCase{{"word", "--test-parser"}, Mode::test_parser},
                    WalkCase{{"--test-master"}, Mode::test_master},
                    WalkCase{{"--post-update-check", "--test-db"}, Mode::graphical},
                    WalkCase{{"--post-update-check"}, Mode::graphical},
                    WalkCase{{"--post-update-check", "x", "--test-db"}, Mode::test_db},
                    WalkCase{{"--import-only", "a b"}, Mode::import_only, "a b"},
                    WalkCase{{"--import-only", "--help"}, Mode::import_only, "--help"},
                    WalkCase{{"word", "--import-only", "x"}, Mode::import_only, "x"},
                    WalkCase{{"word", "--import-only"}, Mode::import_only_without_folder}));

} // namespace
} // namespace tally::app
