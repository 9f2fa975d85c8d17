#include "honor/honor_reconciliation.h"
#include "honor/honor_snapshot.h"

#include <gmock/gmock.h>

#include <limits>

namespace tally::honor {
namespace {

constexpr int most = std::numeric_limits<int>::max();
constexpr int least = std::numeric_limits<int>::min();

struct ReadingCase {
    const char *name;
    HonorBase old;
    HonorReading reading;
    EarnedHonor earned;
    bool fresh;
    HonorBase base;
    int delta;
    std::int64_t estimated;
    std::optional<HonorComparison> comparison;
};

class Reconcile : public testing::TestWithParam<ReadingCase> {};

TEST_P(Reconcile, TakesTheReadingForWhatItIs)
{
    const ReadingCase &one = GetParam();
    const Reconciliation result = reconcile(one.old, one.reading, one.earned);
    EXPECT_EQ(result.fresh, one.fresh);
    EXPECT_EQ(result.base, one.base);
    EXPECT_EQ(result.delta_reports, one.delta);
    EXPECT_EQ(result.estimated, one.estimated);
    EXPECT_EQ(result.comparison, one.comparison);
}

constexpr std::int64_t five_billion = 5'000'000'000;

INSTANTIATE_TEST_SUITE_P(
    Readings, Reconcile,
    testing::Values(
        ReadingCase{"First", {}, {500'000, 10.0}, {0, 30}, true, {500'000, 10.0}, 30, 500'030, {}},
        ReadingCase{"Stale",
                    {500'000, 10.0},
                    {500'000, 70.0},
                    {120, 20},
                    false,
                    {500'000, 10.0},
                    120,
                    500'120,
                    {}},
        ReadingCase{"ReportsTellMore",
                    {500'000, 10.0},
                    {500'100, 130.0},
                    {120, 20},
                    true,
                    {500'100, 130.0},
                    20,
                    500'120,
                    HonorComparison{10.0, 500'000, 130.0, 500'100, 120, 500'120, -20}},
        ReadingCase{"ReportsAreMissing",
                    {500'000, 10.0},
                    {500'300, 130.0},
                    {120, 0},
                    true,
                    {500'300, 130.0},
                    0,
                    500'300,
                    HonorComparison{10.0, 500'000, 130.0, 500'300, 120, 500'120, 180}},
        ReadingCase{"BeyondAnInt",
                    {-five_billion, 10.0},
                    {five_billion, 130.0},
                    {120, 0},
                    true,
                    {five_billion, 130.0},
                    0,
                    five_billion,
                    HonorComparison{10.0, least, 130.0, most, 120, least, most}}),
    [](const auto &of) { return std::string(of.param.name); });

TEST(ReadOk, TellsHowLongItTookAndWhetherTheFigureIsNew)
{
    EXPECT_EQ(read_ok_text(1.25, false), u"Read OK (1.3s)");
    EXPECT_EQ(read_ok_text(12.0, true), u"Read OK (12.0s) FRESH!");
}

TEST(TimeOfReading, IsItsStartElseItsEndElseNow)
{
    ReadResult read;
    EXPECT_EQ(time_of_reading(read, 9.0), 9.0);
    read.finished_at = 7.0;
    EXPECT_EQ(time_of_reading(read, 9.0), 7.0);
    read.started_at = 5.0;
    EXPECT_EQ(time_of_reading(read, 9.0), 5.0);
}

/// A roll of twelve with 1,000 honor less for each rank; the third has no honor, the eighth is
/// missing.
HonorSnapshot snapshot_at(std::optional<int> rank, std::optional<std::int64_t> estimated)
{
    HonorSnapshot snapshot;
    snapshot.rank = rank;
    snapshot.estimated = estimated;
    for (int place = 1; place <= 12; ++place) {
        const auto honor =
            place == 3 ? std::nullopt : std::optional<std::int64_t>(20'000 - 1'000 * place);
        if (place != 8)
            snapshot.leaderboard.push_back({0, QString::number(place), honor, place, {}});
    }
    return snapshot;
}

std::vector<std::pair<int, std::int64_t>> ranks_and_gaps(const HonorSnapshot &snapshot, int count)
{
    std::vector<std::pair<int, std::int64_t>> rows;
    for (const OvertakeRow &row : overtake_targets(snapshot, count)) {
        EXPECT_EQ(row.name, QString::number(row.rank));
        rows.emplace_back(row.rank, row.gap);
    }
    return rows;
}

TEST(OvertakeTargets, AreThoseJustAheadTheFarthestFirst)
{
    using testing::ElementsAre;
    using testing::IsEmpty;
    using testing::Pair;
    EXPECT_THAT(ranks_and_gaps(snapshot_at(10, 10'500), 3),
                ElementsAre(Pair(7, 2'500), Pair(9, 500)));
    EXPECT_THAT(ranks_and_gaps(snapshot_at(2, 19'000), 3), ElementsAre(Pair(1, 0)));
    EXPECT_THAT(ranks_and_gaps(snapshot_at(4, 16'000), 3),
                ElementsAre(Pair(1, 3'000), Pair(2, 2'000), Pair(3, -16'000)));
    EXPECT_THAT(ranks_and_gaps(snapshot_at(1, 19'000), 3), IsEmpty());
    EXPECT_THAT(ranks_and_gaps(snapshot_at({}, 19'000), 3), IsEmpty());
    EXPECT_THAT(ranks_and_gaps(snapshot_at(5, {}), 3), IsEmpty());
}

} // namespace
} // namespace tally::honor
