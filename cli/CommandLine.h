#pragma once

#include <CLI/CLI.hpp>

#include <filesystem>
#include <optional>
#include <string>

namespace vornhale::cli {

/// The program folder a command was given with `--home`; none means the default folder.
class HomeOption
{
public:
    /// Adds `--home DIR` to `command`.
    void addTo(CLI::App* command);
    std::optional<std::filesystem::path> value() const;

private:
    std::string m_text;
};

/// The exit status of the command that ran: 0 on success, 1 when the input was rejected or
/// the run took the failure path, 2 on bad usage.
using ExitStatus = int;

} // namespace vornhale::cli
