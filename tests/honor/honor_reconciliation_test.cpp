#include "honor/honor_reconciliation.h"
#include "honor/honor_snapshot.h"

#include <gmock/gmock.h>

#include <limits>

namespace tally::honor {
namespace {

constexpr int most = std::numeric_limits<int>::max();
constexpr int least = std::numeric_limits<int>::min();

TEST(Reconcile, NumbersBeyondAnIntAreThoseAtItsEnds)
{
    constexpr std::int64_t five_billion = 5'000'000'000;
    const Reconciliation result = reconcile({-five_billion, 10.0}, {five_billion, 130.0}, {120, 0});
    EXPECT_EQ(result.estimated, five_billion);
    EXPECT_EQ(result.comparison, (HonorComparison{10.0, least, 130.0, most, 120, least, most}));
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
