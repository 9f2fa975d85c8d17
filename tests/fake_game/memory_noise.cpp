#include "memory_noise.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <random>

namespace tally::test {

namespace {

constexpr std::size_t mib = std::size_t{1} << 20;
constexpr std::size_t block_mib = 16;

char *map(std::size_t size)
{
    void *memory =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<char *>(memory);
}

std::string chat_lines()
{
    std::string text;
    for (int i = 0; i < 40; ++i) {
        text += std::string{player_name} + ": rally at " + std::to_string(i) + "\n";
        text += std::string{first_enemy} + " attacked " + second_enemy + "\n";
    }
    return text;
}

/// Messages whose sender stands there just as a record's name does.
std::string chat_messages()
{
    std::string text;
    for (const char *sender : {player_name, first_enemy, second_enemy, player_name}) {
        text += "time=1718000000;channel=kingdom;colour=#5865f2;\n";
        text += static_cast<char>(std::strlen(sender));
        text += std::string{sender} + " zzz\n";
    }
    return text;
}

void fill_at_random(char *memory, std::size_t size, std::mt19937_64 &random)
{
    for (std::size_t at = 0; at + 8 <= size; at += 8) {
        const std::uint64_t value = random();
        std::memcpy(memory + at, &value, 8);
    }
}

void strew(char *memory, std::size_t size, const std::string &what, std::size_t every)
{
    for (std::size_t at = every / 2; at + what.size() <= size; at += every)
        std::memcpy(memory + at, what.data(), what.size());
}

} // namespace

MemoryNoise::MemoryNoise(std::size_t size_in_mib, const std::vector<RollPerson> &people,
                         bool churning)
{
    std::mt19937_64 random{7};
    const std::string lines = chat_lines();
    const std::string messages = chat_messages();
    const std::string old_roll = roll_image(earlier(people, 200'000));
    const std::string torn_roll = torn(roll_image(people));
    for (std::size_t done = 0; done < size_in_mib; done += block_mib) {
        const std::size_t size = std::min(block_mib, size_in_mib - done) * mib;
        char *block = map(size);
        if (block == nullptr)
            return;
        fill_at_random(block, size, random);
        strew(block, size, lines, 9'000);
        strew(block, size, messages, 13'000);
        if (done % (4 * block_mib) == 0)
            strew(block, size, done % (8 * block_mib) == 0 ? old_roll : torn_roll, 4 * mib);
    }
    if (churning)
        churner_ = std::thread{[this] { churn(); }};
}

MemoryNoise::~MemoryNoise()
{
    ending_ = true;
    if (churner_.joinable())
        churner_.join();
}

void MemoryNoise::churn()
{
    while (!ending_) {
        for (const std::size_t size : {mib / 4, 3 * mib, mib}) {
            char *memory = map(size);
            if (memory == nullptr)
                continue;
            std::memset(memory, '\n', size);
            mprotect(memory + size / 2, 4096, PROT_NONE);
            munmap(memory, size);
        }
    }
}

} // namespace tally::test
