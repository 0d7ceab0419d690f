#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace vornhale::readers {

/// How a run of an outside program ended.
struct OutsideRun
{
    enum class End {
        Exited,    ///< it ended by itself; `status` holds its exit status
        TimedOut,  ///< it was still running at the time limit and was ended
        NotStarted ///< the system could not start the shell
    };
    End end = End::NotStarted;
    int status = -1;
};

/// Runs `commandLine` through the system shell in `folder` and waits for its end, at most
/// `limit`; a program still running then is ended with its children. Nothing is read from or
/// written to it. A shell that cannot find the program ends with status 127.
OutsideRun runOutsideProgram(const std::string& commandLine, const std::filesystem::path& folder,
                             std::chrono::milliseconds limit);

} // namespace vornhale::readers
