#pragma once

#include "roll_image.h"

#include <atomic>
#include <thread>
#include <vector>

namespace tally::test {

/// Mapped memory full of random bytes, chat lines that hold the names of the roll in running text
/// and in the shape of a record, and stale and torn copies of the roll; and, if wanted, a thread
/// that maps and unmaps memory all the time.
class MemoryNoise {
public:
    MemoryNoise(std::size_t mib, const std::vector<RollPerson> &people, bool churn);
    ~MemoryNoise();
    MemoryNoise(const MemoryNoise &) = delete;
    MemoryNoise &operator=(const MemoryNoise &) = delete;

private:
    void churn();

    std::atomic<bool> ending_ = false;
    std::thread churner_;
};

} // namespace tally::test
