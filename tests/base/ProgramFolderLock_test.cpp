#include "base/ProgramFolderLock.h"
#include "failure/Failure.h"
#include "support/TestSupport.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace vornhale;
using namespace std::chrono_literals;

namespace {

// Runs `body` in a child process and returns its exit status; a lock is per process, so the
// second holder has to be another one.
template <typename Body> int inChild(Body body)
{
    const pid_t pid = ::fork();
    if (pid == 0) {
        _exit(body());
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(ProgramFolderLock, ASecondHolderWaitsAndSaysSoUntilTheFirstLetsGo)
{
    test::TempDir dir;
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    // The first holder is another process that lets go after a while.
    const pid_t pid = ::fork();
    if (pid == 0) {
        {
            const base::ProgramFolderLock first(dir.path());
            const char c = 'x';
            (void)::write(ready[1], &c, 1);
            std::this_thread::sleep_for(600ms);
        }
        _exit(0);
    }
    char c = 0;
    ASSERT_EQ(::read(ready[0], &c, 1), 1);
    int toldWaiting = 0;
    const auto started = std::chrono::steady_clock::now();
    {
        const base::ProgramFolderLock second(dir.path(), [&] { ++toldWaiting; });
        EXPECT_GE(std::chrono::steady_clock::now() - started, 300ms);
    }
    EXPECT_EQ(toldWaiting, 1);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST(ProgramFolderLock, AFreeFolderIsTakenWithoutWaiting)
{
    test::TempDir dir;
    EXPECT_EQ(inChild([&] {
                  bool toldWaiting = false;
                  const base::ProgramFolderLock hold(dir.path(), [&] { toldWaiting = true; });
                  return toldWaiting ? 1 : 0;
              }),
              0);
    EXPECT_TRUE(std::filesystem::exists(dir / base::ProgramFolderLock::kFileName));
}

TEST(ProgramFolderLock, AKilledHolderLetsGo)
{
    test::TempDir dir;
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t pid = ::fork();
    if (pid == 0) {
        const base::ProgramFolderLock hold(dir.path());
        const char c = 'x';
        (void)::write(ready[1], &c, 1);
        ::pause();
        _exit(0);
    }
    char c = 0;
    ASSERT_EQ(::read(ready[0], &c, 1), 1);
    ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ::close(ready[0]);
    ::close(ready[1]);
    EXPECT_EQ(inChild([&] {
                  bool toldWaiting = false;
                  const base::ProgramFolderLock hold(dir.path(), [&] { toldWaiting = true; });
                  return toldWaiting ? 1 : 0;
              }),
              0);
}

TEST(ProgramFolderLock, AFolderThatCannotHoldTheLockFileFailsWith75)
{
    test::TempDir dir;
    try {
        const base::ProgramFolderLock hold(dir / "missing" / "deeper");
        FAIL() << "no failure";
    } catch (const failure::Failure& f) {
        EXPECT_EQ(f.number(), failure::PathFileAccess);
    }
}
