#include "platform/host/fake/fake_host.h"
#include "platform/host/instance_lock.h"
#include "platform/host/x11/file_lock.h"
#include "platform/host/x11/x11_host.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace tally::platform {
namespace {

using std::chrono::milliseconds;

constexpr LockAttempt held{LockOutcome::HeldElsewhere, 0, "CreateMutexW"};

TEST(InstanceLock, ALockThatComesFreeIsTakenOnTheLastTry)
{
    FakeHost host;
    host.lock_attempts.assign(9, held);
    host.lock_attempts.push_back({LockOutcome::Taken, 0, "CreateMutexW"});
    EXPECT_EQ(claim_single_instance(host), InstanceClaim::Only);
    EXPECT_EQ(host.paused, milliseconds{4'500});
}

TEST(InstanceLock, TenTriesInFiveSecondsThenTheClaimIsRefused)
{
    FakeHost host;
    host.lock_attempts.push_back(held);
    testing::internal::CaptureStderr();
    EXPECT_EQ(claim_single_instance(host), InstanceClaim::Refused);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[main] another live instance holds the singleton mutex — exiting\n");
    EXPECT_EQ(host.lock_tries, 10);
    EXPECT_EQ(host.paused, milliseconds{5'000});
}

TEST(InstanceLock, AFailureOfTheLockItselfLetsTheLaunchGoOn)
{
    FakeHost host;
    host.lock_attempts.push_back({LockOutcome::Failed, 5, "CreateMutexW"});
    testing::internal::CaptureStderr();
    EXPECT_EQ(claim_single_instance(host), InstanceClaim::Unguarded);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[main] CreateMutexW failed (err=5) — allowing launch\n");
    EXPECT_EQ(host.lock_tries, 1);
}

/// Another process that takes the lock and then only lives.
pid_t start_holder(const std::string &path)
{
    int ready[2] = {-1, -1};
    if (pipe(ready) != 0)
        return -1;
    const pid_t child = fork();
    if (child == 0) {
        const char taken = try_file_lock(path).outcome == LockOutcome::Taken ? 'y' : 'n';
        if (write(ready[1], &taken, 1) == 1)
            pause();
        _exit(0);
    }
    char taken = 'n';
    const bool told = read(ready[0], &taken, 1) == 1;
    close(ready[0]);
    close(ready[1]);
    return told && taken == 'y' ? child : -1;
}

TEST(InstanceLock, TheFileLockIsHeldAgainstOthersUntilItsProcessIsKilled)
{
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("lock")).toStdString();
    const pid_t holder = start_holder(path);
    ASSERT_GT(holder, 0);
    EXPECT_EQ(try_file_lock(path).outcome, LockOutcome::HeldElsewhere);
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_EQ(try_file_lock(path).outcome, LockOutcome::Taken);
    EXPECT_EQ(try_file_lock(path).outcome, LockOutcome::HeldElsewhere) << "also within one process";
}

TEST(InstanceLock, AFileThatCannotBeOpenedOrIsALinkIsAFailure)
{
    const QTemporaryDir folder;
    const LockAttempt missing =
        try_file_lock(folder.filePath(QStringLiteral("no/such/folder")).toStdString());
    EXPECT_EQ(missing.outcome, LockOutcome::Failed);
    EXPECT_EQ(missing.error, static_cast<unsigned long>(ENOENT));

    const std::string link = folder.filePath(QStringLiteral("link")).toStdString();
    const std::string target = folder.filePath(QStringLiteral("target")).toStdString();
    ASSERT_EQ(symlink(target.c_str(), link.c_str()), 0);
    EXPECT_EQ(try_file_lock(link).outcome, LockOutcome::Failed);
    EXPECT_NE(access(target.c_str(), F_OK), 0) << "nothing is created behind a link";
}

} // namespace
} // namespace tally::platform
