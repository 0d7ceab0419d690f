#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <optional>
#include <string>

namespace vornhale::cli {

struct QsoBankRequest
{
    std::optional<std::filesystem::path> home;
    std::string type; ///< as `convert --type`
    std::filesystem::path log;
};

/// Opens a log as the window's open actions do and writes it as QSOBank XML beside it
/// (`mnuQSOBank_Click`), printing the path. Inputs that the export does not read again
/// (Cabrillo, ADIF, N1MM Logger, CTESTWIN, RTCL 4) take the `zlog_1.txt` a former
/// `convert --keep-work` left in the working folder. Returns 0 on success, 1 when the log
/// cannot be opened or there are no common QSO lines to export, 2 on bad usage.
int runQsoBank(const QsoBankRequest& request);

/// Registers `qsobank`.
void addQsoBankCommand(CLI::App& app, ExitStatus& status);

} // namespace vornhale::cli
