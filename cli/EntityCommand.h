#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vornhale::cli {

struct EntityRequest
{
    std::optional<std::filesystem::path> home;
    std::vector<std::string> calls;
};

/// Imports `cty.dat` and loads `dxcc_mas.txt` of the program folder as a first conversion
/// (or `mnuGet_Entity`) does, then prints for each call its entity, HAMLOG code, entity name
/// and bureau flag, tab-separated. Returns 0, or 1 when the masters cannot be made.
int runEntity(const EntityRequest& request);

/// Registers `entity`.
void addEntityCommand(CLI::App& app, ExitStatus& status);

} // namespace vornhale::cli
