#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

namespace tally::test {

/// Runs as a user whom file permissions stop, where the tests run as root.
class Unprivileged {
public:
    Unprivileged() { active_ = geteuid() == 0 && seteuid(65534) == 0; }
    ~Unprivileged()
    {
        if (active_ && seteuid(0) != 0)
            ADD_FAILURE() << "still unprivileged";
    }

private:
    bool active_;
};

} // namespace tally::test
