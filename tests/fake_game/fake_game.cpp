// Stands in for the game: shows a window and holds an honor roll in memory that is full of things
// which resemble one. Says "ready" on its output, then obeys lines on its input and
// answers each with "done". Ends with its input.

#include "fake_window.h"
#include "memory_noise.h"
#include "roll_image.h"

#include <malloc.h>
#include <sys/prctl.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <string>

namespace {

using namespace tally::test;

using Options = std::map<std::string, std::string>;

Options options_of(int argc, char **argv)
{
    Options options{{"title", "Rise of Kingdoms"},
                    {"records", "1000"},
                    {"rank", "500"},
                    {"stride", "192"},
                    {"noise-mib", "0"}};
    for (int i = 1; i + 1 < argc; i += 2)
        options[argv[i] + 2] = argv[i + 1];
    return options;
}

std::size_t number(const Options &options, const char *name)
{
    return std::strtoul(options.at(name).c_str(), nullptr, 10);
}

char *keep(const std::string &bytes)
{
    char *copy = static_cast<char *>(std::malloc(bytes.size()));
    std::memcpy(copy, bytes.data(), bytes.size());
    return copy;
}

/// The roll on the heap, with an older copy right before it, a torn one before that, and an older
/// one behind.
char *lay_roll_amid_decoys(const std::vector<RollPerson> &people, std::size_t stride)
{
    const std::string image = roll_image(people, stride);
    const std::string older = roll_image(earlier(people, 50'000), stride);
    keep(torn(image, stride));
    keep(older);
    char *roll = keep(image);
    keep(older);
    return roll;
}

/// Writes the roll anew with more honor for everybody, as when the player opens it again.
void add_honor(char *roll, std::vector<RollPerson> &people, std::size_t stride, std::uint64_t more)
{
    for (RollPerson &person : people)
        person.honor += more;
    const std::string image = roll_image(people, stride);
    std::memcpy(roll, image.data(), image.size());
}

/// Reopens a window after each close, until the input ends.
void obey_input(FakeWindow &window, char *roll, std::vector<RollPerson> people, std::size_t stride)
{
    std::string command;
    while (std::getline(std::cin, command)) {
        if (command == "close")
            window.close();
        else if (command == "full" || command == "window")
            window.set_full_screen(command == "full");
        else if (command.starts_with("add "))
            add_honor(roll, people, stride, std::stoull(command.substr(4)));
        std::cout << "done" << std::endl;
    }
}

} // namespace

int main(int argc, char **argv)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    mallopt(M_MMAP_THRESHOLD, 1 << 30); // the roll shall lie on the heap proper
    const Options options = options_of(argc, argv);
    const std::vector<RollPerson> people =
        roll_people(number(options, "records"), number(options, "rank"));
    const std::size_t stride = number(options, "stride");

    const MemoryNoise noise{number(options, "noise-mib"), people, options.count("churn") != 0};
    char *roll = people.empty() ? nullptr : lay_roll_amid_decoys(people, stride);
    FakeWindow window{options.at("title")};
    if (options.count("undumpable") != 0)
        prctl(PR_SET_DUMPABLE, 0);
    std::cout << "ready" << std::endl;
    obey_input(window, roll, people, stride);
    return 0;
}
