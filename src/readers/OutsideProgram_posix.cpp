#include "readers/OutsideProgram.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace vornhale::readers {
namespace {

// How often the end of the program is looked for.
constexpr std::chrono::milliseconds kPoll{20};

struct SpawnSetup
{
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    SpawnSetup()
    {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
    }
    ~SpawnSetup()
    {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
};

} // namespace

OutsideRun runOutsideProgram(const std::string& commandLine, const std::filesystem::path& folder,
                             std::chrono::milliseconds limit)
{
    SpawnSetup setup;
    // Nothing to read; what it prints goes where the program's own messages go, so that the
    // command line's results on standard output stay clean.
    posix_spawn_file_actions_addopen(&setup.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&setup.actions, STDERR_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_addchdir_np(&setup.actions, folder.c_str());
    // Its own process group, so that a program that outlives the limit goes with its children.
    posix_spawnattr_setflags(&setup.attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&setup.attributes, 0);

    const char* shell = "/bin/sh";
    std::string command = commandLine;
    char* argv[] = {const_cast<char*>(shell), const_cast<char*>("-c"), command.data(), nullptr};
    pid_t pid = -1;
    if (posix_spawn(&pid, shell, &setup.actions, &setup.attributes, argv, environ) != 0) {
        return {};
    }

    OutsideRun run;
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        int status = 0;
        const pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid) {
            run.end = OutsideRun::End::Exited;
            run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return run;
        }
        if (done < 0 && errno != EINTR) {
            run.end = OutsideRun::End::Exited;
            return run;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            kill(-pid, SIGKILL);
            waitpid(pid, &status, 0);
            run.end = OutsideRun::End::TimedOut;
            return run;
        }
        std::this_thread::sleep_for(kPoll);
    }
}

} // namespace vornhale::readers
