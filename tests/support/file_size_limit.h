#pragma once

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <gtest/gtest.h>
#else
#include <csignal>

#include <sys/resource.h>
#endif

namespace tally::test {

#ifdef Q_OS_WIN

/// Windows has no such limit.
class FileSizeLimit {
public:
    explicit FileSizeLimit(qint64) { ADD_FAILURE() << "no full disk can be had here"; }
};

#else

/// A disk that is full: while it lives, no file of this process may grow beyond `bytes`.
class FileSizeLimit {
public:
    explicit FileSizeLimit(qint64 bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = static_cast<rlim_t>(bytes);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit before_{};
};

#endif

} // namespace tally::test
