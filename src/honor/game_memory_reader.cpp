#include "honor/game_memory_reader.h"

#include "honor/honor_roll.h"
#include "honor/marker_addresses.h"
#include "honor/memory_window.h"
#include "honor/roll_start.h"
#include "platform/host/game_windows.h"

#include <algorithm>
#include <utility>

namespace tally::honor {

namespace {

constexpr std::uint64_t search_margin = 0x8000000;
constexpr std::uint64_t top_address = 0x7FFFFFFFFFFF;
constexpr std::size_t cache_size = 10;

} // namespace

GameMemoryReader::GameMemoryReader(platform::Host &host, QString target_exe, platform::Clock clock)
    : host_(host), target_exe_(std::move(target_exe)), clock_(std::move(clock))
{}

void GameMemoryReader::set_markers(const QString &player, const QString &enemy1,
                                   const QString &enemy2)
{
    markers_ = {player.toUtf8(), enemy1.toUtf8(), enemy2.toUtf8()};
}

bool GameMemoryReader::attach()
{
    const auto windows = platform::find_game_windows(host_);
    const platform::GameWindowInfo *game = platform::pick_game_window(windows, target_exe_);
    if (game == nullptr) {
        state_ = ReaderState::GameNotFound;
        return false;
    }
    if (process_ && pid_ == game->pid) {
        state_ = ReaderState::Ok;
        return true;
    }
    detach();
    host_.enable_debug_privilege();
    platform::OpenedProcess opened = host_.open_process(game->pid);
    if (!opened.memory) {
        state_ = opened.rights_missing && !host_.elevated() ? ReaderState::NeedsAdmin
                                                            : ReaderState::OpenFailed;
        return false;
    }
    process_ = std::move(opened.memory);
    pid_ = game->pid;
    state_ = ReaderState::Ok;
    return true;
}

void GameMemoryReader::detach()
{
    process_.reset();
    pid_.reset();
}

QByteArray GameMemoryReader::read_memory(std::uint64_t address, std::uint64_t size)
{
    if (!process_ || size == 0)
        return {};
    QByteArray bytes(static_cast<qsizetype>(size), Qt::Uninitialized);
    bytes.truncate(static_cast<qsizetype>(process_->read(address, bytes.data(), size)));
    return bytes;
}

QByteArray GameMemoryReader::read_window(std::uint64_t start, std::uint64_t size)
{
    if (!process_)
        return QByteArray(static_cast<qsizetype>(size), '\0');
    return honor::read_window(*process_, start, size, stop_);
}

int GameMemoryReader::score_candidate(std::uint64_t address)
{
    return count_records(
        read_window(address_below(address, score_window.before), score_window.size));
}

std::optional<std::int64_t> GameMemoryReader::find_own_honor(std::uint64_t address,
                                                             const QString &player_name,
                                                             std::int64_t low, std::int64_t high)
{
    const std::uint64_t start = address_below(address, own_honor_window.before);
    return largest_honor_of(read_window(start, own_honor_window.size), player_name, {low, high});
}

std::optional<ReadResult> GameMemoryReader::read_honor_roll(const QString &player_name,
                                                            std::stop_token stop)
{
    stop_ = std::move(stop);
    ReadResult result;
    result.started_at = clock_();
    result.player_name = player_name;
    const bool marked = std::none_of(markers_.begin(), markers_.end(),
                                     [](const QByteArray &marker) { return marker.isEmpty(); });
    if (!attach() || !marked)
        return std::nullopt;

    const Candidates candidates = find_candidates();
    const auto chosen = best_candidate(candidates, player_name);
    if (!chosen)
        return std::nullopt;
    result.candidates = candidates.size();
    result.entries = read_roll(*chosen);
    // A roll cut short by a stop or by the game's end would tell wrong ranks.
    if (stop_.stop_requested() || result.entries.empty() ||
        read_memory(result.entries.front().address, 1).isEmpty())
        return std::nullopt;
    remember(*chosen);

    const auto own = std::find_if(result.entries.begin(), result.entries.end(),
                                  [&](const auto &entry) { return entry.name == player_name; });
    if (own != result.entries.end()) {
        result.own_honor = own->honor;
        result.own_rank = own->rank;
        result.own_kingdom = own->kingdom;
    }
    result.finished_at = clock_();
    result.elapsed = result.finished_at - result.started_at;
    return result;
}

GameMemoryReader::Candidates GameMemoryReader::find_candidates()
{
    if (!address_cache_.empty()) {
        const auto [least, most] =
            std::minmax_element(address_cache_.begin(), address_cache_.end());
        Candidates near =
            candidates_between(address_below(*least, search_margin), *most + search_margin);
        if (!near.empty())
            return near;
    }
    return candidates_between(0, top_address);
}

GameMemoryReader::Candidates GameMemoryReader::candidates_between(std::uint64_t low,
                                                                  std::uint64_t high)
{
    Candidates candidates;
    for (const std::uint64_t address :
         find_marker_addresses(*process_, low, high, markers_, stop_)) {
        if (score_candidate(address) >= least_score)
            candidates.insert(address);
    }
    return candidates;
}

/// The address that shows the highest own honor; where none shows any, the one with the highest
/// score. Among equals the lowest.
std::optional<std::uint64_t> GameMemoryReader::best_candidate(const Candidates &candidates,
                                                              const QString &player_name)
{
    std::optional<std::uint64_t> richest;
    std::optional<std::uint64_t> fullest;
    std::int64_t most_honor = 0;
    int best_score = 0;
    for (const std::uint64_t address : candidates) {
        const auto honor =
            find_own_honor(address, player_name, plausible_own_honor.low, plausible_own_honor.high);
        const int score = score_candidate(address);
        if (honor && *honor > most_honor) {
            richest = address;
            most_honor = *honor;
        }
        if (score > best_score) {
            fullest = address;
            best_score = score;
        }
    }
    if (richest)
        return richest;
    return best_score >= least_score && fullest != std::uint64_t{0} ? fullest : std::nullopt;
}

void GameMemoryReader::remember(std::uint64_t address)
{
    std::erase(address_cache_, address);
    address_cache_.insert(address_cache_.begin(), address);
    address_cache_.resize(std::min(address_cache_.size(), cache_size));
}

std::vector<LeaderboardEntry> GameMemoryReader::read_roll(std::uint64_t address)
{
    const std::uint64_t start = address_below(address, roll_window.before);
    const QByteArray window = read_window(start, roll_window.size);
    return ranked_roll(parse_entries(without_zero_tail(window), start));
}

} // namespace tally::honor
