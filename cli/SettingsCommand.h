#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <optional>
#include <string>

namespace vornhale::cli {

struct SettingsRequest
{
    std::optional<std::filesystem::path> home;
    std::string action;   ///< "show", "init", "get" or "set"
    std::string argument; ///< KEY for get, KEY=VALUE for set
};

/// Starts the program in the program folder as the window would, then shows, reads or
/// changes its settings files. Returns the exit status: 0 on success, 1 when the program
/// folder cannot be used or a file cannot be written, 2 on bad usage or an unknown key.
int runSettings(const SettingsRequest& request);

/// Registers `settings`.
void addSettingsCommand(CLI::App& app, ExitStatus& status);

} // namespace vornhale::cli
