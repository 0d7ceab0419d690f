#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vornhale::tools {
class DataDownloads;
}

namespace vornhale::cli {

struct DownloadRequest
{
    std::optional<std::filesystem::path> home;
    bool all = false;
    bool unpack = false;
    std::vector<std::string> rows; ///< `th505api`, `unzip32`, `unlha32`, `cty`, `ardx`, `arrl10`
};

/// Downloads the chosen rows of the download window from the homes of `Vornhale_web.ini`
/// into the program folder and prints each row's status, one `row<TAB>status<TAB>address
/// <TAB>file[<TAB>reason]` a line; with `unpack`, runs each row's unpack action after the
/// downloads. Needs `inet_flag` "OK". Returns 0 when every row came (and unpacked), 1
/// otherwise, 2 on bad usage.
int runDownload(const DownloadRequest& request);

/// The download window of the command line, opened by the start's offer for missing data
/// files: downloads the ticked rows and unpacks a `cty` archive that came, printing each
/// status on stderr. Returns whether every ticked row came.
bool runStartDownloads(tools::DataDownloads& window);

/// Registers `download`.
void addDownloadCommand(CLI::App& app, ExitStatus& status);

} // namespace vornhale::cli
