#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vornhale::cli {

struct ConvertRequest
{
    std::optional<std::filesystem::path> home;
    std::vector<std::string> sets; ///< KEY=VALUE
    std::string type;
    std::string table; ///< the table of an N1MM Logger database: "DXLOG" or "CurrentContest"
    std::string year;
    bool keepWork = false;
    bool cancelQuestions = false; ///< answer the operator's questions with cancel
    bool downloadMissing = false; ///< take the start's offer to download missing data files
    std::string provinceMaster;   ///< the province master for `Check5`, chosen by hand
    std::filesystem::path log;
};

/// Runs one conversion as the start button does. Returns the exit status: 0 on success,
/// 1 when the input was rejected or the run took the failure path, 2 on bad usage.
int runConvert(const ConvertRequest& request);

/// Registers `convert`.
void addConvertCommand(CLI::App& app, ExitStatus& status);

} // namespace vornhale::cli
