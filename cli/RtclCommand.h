#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <optional>
#include <string>

namespace vornhale::cli {

struct RtclRequest
{
    std::optional<std::filesystem::path> home;
    std::string type; ///< log_old, log_new, log_v4 or log_v430
    std::string form; ///< txt or all
    std::filesystem::path log;
};

/// Writes an RTCL log as a zLog text beside it without a conversion, as the RTCL menus and
/// the RTCL v4 window do: `_l2z.txt` or `_l2z.all` for the text generations (after the test
/// that refuses a log of the other generation), `_log2z.txt` or `_log2z.all` for the binary
/// ones (after their version check). Prints the path written. Returns 0 on success, 1 when
/// the log was refused or a failure ended the program, 2 on bad usage.
int runRtcl(const RtclRequest& request);

/// Registers `rtcl2zlog`.
void addRtclCommand(CLI::App& app, ExitStatus& status);

} // namespace vornhale::cli
