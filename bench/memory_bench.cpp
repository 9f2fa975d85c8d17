// How fast another process's memory is searched for the honor roll, against a bare copy of the same
// bytes; what a read with known addresses takes; what memory it needs.

#include "fake_game/roll_image.h"
#include "figure.h"
#include "game_child.h"
#include "honor/game_memory_reader.h"
#include "honor/marker_addresses.h"
#include "honor/memory_walk.h"
#include "platform/host/fake/fake_host.h"
#include "platform/host/game_windows.h"
#include "platform/host/x11/proc_memory.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>

namespace {

using namespace tally;
using platform::ProcMemory;

constexpr std::size_t game_mib = 1024;
constexpr std::uint64_t top_address = 0x7FFFFFFFFFFF;
constexpr int rounds = 7;

double seconds_of(const std::function<void()> &work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Copies every readable region, `chunk` bytes at a time. \return how many bytes came.
std::uint64_t copy_all(platform::ProcessMemory &memory, std::vector<char> &chunk)
{
    std::uint64_t copied = 0;
    for (const auto &region : memory.readable_regions(0, top_address)) {
        for (std::uint64_t at = region.begin; at < region.end; at += chunk.size())
            copied += memory.read(at, chunk.data(),
                                  std::min<std::uint64_t>(chunk.size(), region.end - at));
    }
    return copied;
}

honor::Markers markers()
{
    return {QByteArray{test::player_name}, QByteArray{test::first_enemy},
            QByteArray{test::second_enemy}};
}

void bench_search(platform::ProcessMemory &memory)
{
    std::vector<char> walk_chunk(honor::MemoryWalk::chunk_size);
    std::vector<char> large_chunk(std::size_t{4} << 20);
    std::vector<double> ratios;
    for (int i = 0; i < rounds; ++i) {
        std::uint64_t bytes = 0;
        std::size_t found = 0;
        const double large = seconds_of([&] { bytes = copy_all(memory, large_chunk); });
        const double small = seconds_of([&] { bytes = copy_all(memory, walk_chunk); });
        const double search = seconds_of([&] {
            found = honor::find_marker_addresses(memory, 0, top_address, markers(), {}).size();
        });
        const double gib = static_cast<double>(bytes) / (1U << 30);
        std::printf(
            "%.2f GiB: copy %.2f GiB/s (4 MiB at a time %.2f), search %.2f GiB/s, found %zu\n", gib,
            gib / small, gib / large, gib / search, found);
        if (found == 0)
            std::exit(1);
        ratios.push_back(std::min(small, large) / search);
    }
    bench::print_figure("memory_search_to_copy", bench::median(ratios), bench::Goal::at_least, 0.5);
}

/// The child as the game's process, without a window system.
class ChildHost : public platform::FakeHost {
public:
    explicit ChildHost(pid_t pid)
    {
        windows.push_back({1, platform::game_title, static_cast<std::uint32_t>(pid)});
    }
    platform::OpenedProcess open_process(std::uint32_t process_id) override
    {
        return ProcMemory::open(process_id);
    }
};

double status_mib(const char *field)
{
    std::ifstream status{"/proc/self/status"};
    std::string word;
    while (status >> word) {
        double kib = 0;
        if (word == field && status >> kib)
            return kib / 1024;
    }
    return 0;
}

void bench_read(pid_t pid)
{
    ChildHost host{pid};
    std::ofstream{"/proc/self/clear_refs"} << "5"; // forget the peak so far
    const double at_start = status_mib("VmRSS:");
    honor::GameMemoryReader reader{host, {}};
    reader.set_markers(QString::fromUtf8(test::player_name), QString::fromUtf8(test::first_enemy),
                       QString::fromUtf8(test::second_enemy));
    const auto read = [&] {
        const auto result = reader.read_honor_roll(QString::fromUtf8(test::player_name));
        // Behind the roll's thousand come names that random bytes happen to form.
        if (!result || result->entries.size() < 1000 || result->own_rank != 500) {
            std::fputs("the roll was misread\n", stderr);
            std::exit(1);
        }
    };
    std::printf("first read %.3f s\n", seconds_of(read));
    std::vector<double> warm;
    for (int i = 0; i < rounds; ++i)
        warm.push_back(seconds_of(read));
    bench::print_figure("memory_warm_read_seconds", bench::median(warm), bench::Goal::at_most, 0.5);
    bench::print_figure("memory_resident_mib_above_start", status_mib("VmHWM:") - at_start,
                        bench::Goal::at_most, 16);
}

} // namespace

int main()
{
    const bench::GameChild game{game_mib};
    bench_read(game.pid());
    const auto memory = ProcMemory::open(static_cast<std::uint32_t>(game.pid())).memory;
    if (!memory)
        return 1;
    bench_search(*memory);
    return 0;
}
