#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vornhale::cli {

struct MngRequest
{
    std::optional<std::filesystem::path> home;
    std::vector<std::string> sets; ///< KEY=VALUE, replaced for this command only
    std::string type;              ///< as `convert --type`, for `--walk`
    std::string call;              ///< the call of one search
    std::filesystem::path walkLog; ///< the log of a batch walk
};

/// One web search of a manager as `cmdSubmit` runs it, printing, one `key<TAB>value` a line,
/// the call searched, the web's manager, date and source, the manager file's answer and the
/// outcome text. A failed download is a search without a manager, told on stderr. Returns 0,
/// or 1 when the program could not start or the manager file could not be read.
int runMngSearch(const MngRequest& request);

/// The batch walk (`mnuGet_MNG_Click`) over a log: prints the grid's heads and then each row,
/// cells separated by tabs as the grid shows them. Returns 0, 1 when the log was rejected or
/// the run took the failure path, 2 on bad usage.
int runMngWalk(const MngRequest& request);

/// Registers `mng`.
void addMngCommand(CLI::App& app, ExitStatus& status);

} // namespace vornhale::cli
