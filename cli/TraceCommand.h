#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <optional>
#include <string>

namespace vornhale::cli {

/// What `trace` was asked for.
struct TraceRequest
{
    std::optional<std::filesystem::path> home;
    bool last = false; ///< print the newest trace
    std::string file;  ///< print this trace (a name in `Error_Log` or a path)
};

/// Lists the traces of the program folder's `Error_Log`, oldest first, or prints one of them
/// in UTF-8. It reads only: no start of the program, no wait for another run. Returns 0, or
/// 1 when there is no trace to print, 2 when the named trace does not exist.
int runTrace(const TraceRequest& request);

/// Registers `trace`.
void addTraceCommand(CLI::App& app, ExitStatus& status);

} // namespace vornhale::cli
