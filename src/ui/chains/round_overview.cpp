#include "ui/chains/round_overview.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace tally::ui {
namespace {

size_t won_rounds(const data::ChainRun &chain)
{
    return static_cast<size_t>(std::ranges::count_if(chain.rounds, has_loot));
}

/// Time of day, UTC.
QString start_text(std::optional<double> seconds)
{
    constexpr double last_second = 253'402'300'799.0; // of the year 9999
    if (!seconds || !(std::abs(*seconds) <= last_second))
        return QStringLiteral("?");
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(*seconds), Qt::UTC)
        .toString(QStringLiteral("HH:mm:ss"));
}

std::optional<double> duration_of(const data::ChainRun &chain)
{
    if (!chain.chain_start_time || !chain.chain_end_time)
        return std::nullopt;
    return *chain.chain_end_time - *chain.chain_start_time;
}

} // namespace

RoundOverview::RoundOverview(std::vector<data::ChainRun> chains,
                             std::vector<std::optional<data::FortOfChain>> forts)
    : chains_(std::move(chains)), forts_(std::move(forts)), keys_(round_keys(chains_))
{
    forts_.resize(chains_.size());
    final_fort_rounds_.reserve(chains_.size());
    std::ranges::transform(chains_, std::back_inserter(final_fort_rounds_), final_fort_round);
}

QString RoundOverview::banner(const QString &hero_name_1, const QString &hero_name_2) const
{
    size_t rounds = 0;
    size_t won = 0;
    for (const data::ChainRun &chain : chains_) {
        rounds += chain.rounds.size();
        won += won_rounds(chain);
    }
    return QStringLiteral("%1 + %2   ·   %3 chains   ·   %4 rounds   ·   %5 won / %6 escapes")
        .arg(hero_name_1, hero_name_2, QString::number(chains_.size()), QString::number(rounds),
             QString::number(won), QString::number(rounds - won));
}

QString RoundOverview::chain_head(size_t chain) const
{
    return chain_head_text(number_of(chain), chains_[chain]);
}

RoundLook RoundOverview::row(size_t chain, size_t row) const
{
    const data::ChainRound &round = round_at(chain, row);
    const RoundKey key{chains_[chain].file_name, round.round_no};
    const RoundFlags flags{.is_free = keys_.free.contains(key),
                           .is_tactical = keys_.tactical.contains(key),
                           .is_destroyed = is_destroyed(chain, round)};
    return round_look(number_of(chain), round, flags, forts_[chain]);
}

size_t RoundOverview::reward_count(size_t chain, size_t row) const
{
    const data::ChainRound &round = round_at(chain, row);
    return ui::reward_count(round, is_destroyed(chain, round), forts_[chain]);
}

const data::ChainRound &RoundOverview::round_at(size_t chain, size_t row) const
{
    const auto &rounds = chains_[chain].rounds;
    return rounds[rounds.size() - 1 - row];
}

bool RoundOverview::is_destroyed(size_t chain, const data::ChainRound &round) const
{
    return round.is_fort_round && forts_[chain] && round.round_no == final_fort_rounds_[chain];
}

QString chain_duration_text(std::optional<double> seconds)
{
    constexpr double limit = 1e15;
    if (!seconds || !(*seconds > 0.0) || *seconds > limit)
        return QStringLiteral("?");
    const auto whole = static_cast<qint64>(*seconds);
    if (whole < 60)
        return QStringLiteral("%1s").arg(whole);
    if (whole < 3600)
        return QStringLiteral("%1min %2s").arg(whole / 60).arg(whole % 60);
    return QStringLiteral("%1h %2min").arg(whole / 3600).arg(whole / 60 % 60);
}

QString chain_head_text(int number, const data::ChainRun &chain)
{
    const size_t won = won_rounds(chain);
    return QStringLiteral("Chain #%1  ·  start %2 UTC  ·  %3  ·  %4 rounds (%5 won / %6 escapes)")
        .arg(QString::number(number), start_text(chain.chain_start_time),
             chain_duration_text(duration_of(chain)), QString::number(chain.rounds.size()),
             QString::number(won), QString::number(chain.rounds.size() - won));
}

} // namespace tally::ui
