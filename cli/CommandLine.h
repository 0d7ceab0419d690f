#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

/// Values replaced for one command, as `--set KEY=VALUE` gives them.
using Overrides = std::vector<std::pair<std::string, std::string>>;

/// Why `value` cannot be given to the option `key`, or nothing when it can: an unknown key
/// (neither a settings key nor an option of the window), a value the program writes itself, a
/// tick other than "0" or "1", a group member out of range, a number that is none.
std::optional<std::string> settingRefusal(std::string_view key, std::string_view value);

/// Adds each `KEY=VALUE` word of `sets` to `overrides`. False, after telling on stderr why,
/// for a word without "=" or one that `settingRefusal` refuses.
bool parseSets(const std::vector<std::string>& sets, Overrides& overrides);

/// Why `year` is no year for `--year` (four digits), or nothing.
std::optional<std::string> yearRefusal(std::string_view year);

/// Why `log` cannot be read as a log (it does not exist, or it is a folder), or nothing.
std::optional<std::string> logRefusal(const std::filesystem::path& log);

/// Why a path cannot be used by a program that writes Shift-JIS files naming it (it holds a
/// character that Shift-JIS cannot hold), naming the character; or nothing.
std::optional<std::string> pathRefusal(const std::filesystem::path& path, std::string_view what);

/// The checks of a LOG argument before anything starts: `logRefusal` and `pathRefusal`.
/// False, after telling on stderr why.
bool checkLogArgument(const std::filesystem::path& log);

/// The checks of the program folder before anything starts: `pathRefusal` of the folder that
/// `home` resolves to. False, after telling on stderr why.
bool checkHome(const std::optional<std::filesystem::path>& home);

} // namespace vornhale::cli
