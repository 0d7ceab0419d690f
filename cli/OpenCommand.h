#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <optional>
#include <string>

namespace vornhale::cli {

struct OpenRequest
{
    std::optional<std::filesystem::path> home;
    std::string type;  ///< as `convert --type`
    std::string table; ///< the table of an N1MM Logger database: "DXLOG" or "CurrentContest"
    std::filesystem::path log;
};

/// Opens a log as the window's open actions do and prints what they decided: the kind,
/// every output name, the counts, the labels with their colours, the exchange analysis and
/// whether the start would be enabled. Returns 0 when the log was opened, 1 when it was
/// rejected or the program ended, 2 on bad usage.
int runOpen(const OpenRequest& request);

/// Opens a `.ZLO` log (or a `.ZLOX` log, as the `.ZLO` zLog would have written for it) and
/// writes its `_z2a.all` text (`mnuMake_z2a_Click`), printing the path. Returns 0 on success,
/// 1 when the log cannot be opened or written.
int runZ2a(const OpenRequest& request);

/// Registers `open` and `z2a`.
void addOpenCommands(CLI::App& app, ExitStatus& status);

} // namespace vornhale::cli
