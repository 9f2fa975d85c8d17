// Preloaded into a program, has every look-up of a host's name take for ever, as it does for
// minutes where no name server answers.

#include <cstdio>

#include <netdb.h>
#include <unistd.h>

extern "C" int getaddrinfo(const char *name, const char * /*service*/, const addrinfo * /*hints*/,
                           addrinfo ** /*found*/)
{
    static_cast<void>(std::fprintf(stderr, "looking up %s\n", name));
    for (;;)
        pause();
}
