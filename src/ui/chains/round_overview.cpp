#include "ui/chains/round_overview.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace tally::ui {
namespace {

/// UTC; empty without a time that a calendar has.
QString time_text(std::optional<double> seconds, const QString &format)
{
    constexpr double last_second = 253'402'300'799.0; // of the year 9999
    if (!seconds || !(std::abs(*seconds) <= last_second))
        return {};
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(*seconds), Qt::UTC).toString(format);
}

std::optional<double> duration_of(const data::ChainHead &chain)
{
    if (!chain.chain_start_time || !chain.chain_end_time)
        return std::nullopt;
    return *chain.chain_end_time - *chain.chain_start_time;
}

std::vector<data::ChainHead> heads_of(const std::vector<data::ChainRun> &chains)
{
    std::vector<data::ChainHead> heads;
    heads.reserve(chains.size());
    std::ranges::transform(chains, std::back_inserter(heads), head_of);
    return heads;
}

} // namespace

RoundOverview::RoundOverview(std::vector<data::ChainHead> heads)
    : heads_(std::move(heads)), encounters_(heads_)
{}

RoundOverview::RoundOverview(std::vector<data::ChainRun> chains,
                             std::vector<std::optional<data::FortOfChain>> forts)
    : RoundOverview(heads_of(chains))
{
    forts.resize(chains.size());
    for (size_t i = 0; i < chains.size(); ++i)
        set_rounds(i, {std::move(chains[i].rounds), std::move(forts[i])});
}

void RoundOverview::set_rounds(size_t chain, ChainRounds rounds)
{
    Known &known = known_[chain];
    known.meetings = encounters_.meetings(chain, rounds.rounds);
    known.final_fort_round = final_fort_round(rounds.rounds);
    known.rounds = std::move(rounds);
}

void RoundOverview::forget_rounds_outside(size_t first, size_t last)
{
    known_.erase(known_.begin(), known_.lower_bound(first));
    known_.erase(known_.lower_bound(last), known_.end());
}

QString RoundOverview::banner(const QString &hero_name_1, const QString &hero_name_2) const
{
    qint64 rounds = 0;
    qint64 won = 0;
    for (const data::ChainHead &chain : heads_) {
        rounds += chain.rounds;
        won += chain.wins;
    }
    return QStringLiteral("%1 + %2   ·   %3 chains   ·   %4 rounds   ·   %5 won / %6 escapes")
        .arg(hero_name_1, hero_name_2, QString::number(heads_.size()), QString::number(rounds),
             QString::number(won), QString::number(rounds - won));
}

QString RoundOverview::chain_head(size_t chain) const
{
    return chain_head_text(number_of(chain), heads_[chain]);
}

size_t RoundOverview::row_count(size_t chain) const
{
    const auto known = known_.find(chain);
    return known == known_.end() ? 0 : known->second.rounds.rounds.size();
}

RoundLook RoundOverview::row(size_t chain, size_t row) const
{
    const Known &known = known_.at(chain);
    const size_t index = known.rounds.rounds.size() - 1 - row;
    const data::ChainRound &round = known.rounds.rounds[index];
    const RoundFlags flags{.is_free = known.meetings[index].is_free,
                           .is_tactical = known.meetings[index].is_tactical,
                           .is_destroyed = is_destroyed(known, round)};
    return round_look(number_of(chain), round, flags, known.rounds.fort);
}

size_t RoundOverview::reward_count(size_t chain, size_t row) const
{
    const Known &known = known_.at(chain);
    const data::ChainRound &round = known.rounds.rounds[known.rounds.rounds.size() - 1 - row];
    return ui::reward_count(round, is_destroyed(known, round), known.rounds.fort);
}

size_t RoundOverview::rows_with_rewards(size_t chain) const
{
    const data::ChainHead &head = heads_[chain];
    return static_cast<size_t>(std::min(head.wins + (head.has_fort_loot ? 1 : 0), head.rounds));
}

bool RoundOverview::is_destroyed(const Known &known, const data::ChainRound &round) const
{
    return round.is_fort_round && known.rounds.fort && round.round_no == known.final_fort_round;
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

QString chain_head_text(int number, const data::ChainHead &chain)
{
    const QString start = time_text(chain.chain_start_time, QStringLiteral("HH:mm:ss"));
    return QStringLiteral("Chain #%1  ·  start %2 UTC  ·  %3  ·  %4 rounds (%5 won / %6 escapes)")
        .arg(QString::number(number), start.isEmpty() ? QStringLiteral("?") : start,
             chain_duration_text(duration_of(chain)), QString::number(chain.rounds),
             QString::number(chain.wins), QString::number(chain.rounds - chain.wins));
}

QString chain_date_text(const data::ChainHead &chain)
{
    return time_text(chain.chain_start_time, QStringLiteral("yyyy-MM-dd HH:mm:ss 'UTC'"));
}

} // namespace tally::ui
