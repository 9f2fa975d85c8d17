#include "game_child.h"

#include "fake_game/memory_noise.h"
#include "fake_game/roll_image.h"

#include <malloc.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace tally::bench {

namespace {

[[noreturn]] void play_game(std::size_t mib, int ready)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const auto people = test::roll_people(1000, 500);
    mallopt(M_MMAP_THRESHOLD, 1 << 16); // the roll shall lie amid the rest, not on a heap apart
    const test::MemoryNoise above{mib / 2, people, false};
    const std::string roll = test::roll_image(people);
    const test::MemoryNoise below{mib / 2, people, false};
    if (write(ready, roll.data(), 1) == 1)
        pause();
    _exit(0);
}

} // namespace

GameChild::GameChild(std::size_t mib)
{
    int ready[2] = {-1, -1};
    if (pipe(ready) != 0)
        std::abort();
    pid_ = fork();
    if (pid_ == 0)
        play_game(mib, ready[1]);
    close(ready[1]);
    char byte = 0;
    if (read(ready[0], &byte, 1) != 1)
        std::abort();
    close(ready[0]);
}

GameChild::~GameChild()
{
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
}

} // namespace tally::bench
