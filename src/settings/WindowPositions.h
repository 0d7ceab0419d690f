#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::settings {

/// The name of the window-position file in the program folder.
inline constexpr std::string_view kPositionFileName = "Vornhale_posi.ini";

/// Where a window stands: its state (0 normal, 1 minimised, 2 maximised) and the rectangle
/// it has in the normal state, in twips. A maximised window keeps here the place it returns
/// to.
struct WindowPlacement
{
    int state = 0;
    long left = 0;
    long top = 0;
    long width = 0;
    long height = 0;

    bool operator==(const WindowPlacement&) const = default;
};

/// The windows that remember their place, by form name.
inline constexpr std::array<std::string_view, 17> kPositionForms = {
    "Vornhale",    "frmConfig", "frmDate",           "frmDisp",
    "frmDownLoad", "frmKetasu", "frmRmk_Rireki_sel", "frmRmks_sel",
    "Grid4frm",    "Grid5frm",  "frmGet_MNG",        "frmCheck_bak_qso_mas",
    "frmRTCL_v4",  "frmDisp2",  "frmDisp3",          "frmDisp4",
    "frmMode"};

/// "Position_" + form name: the section of a window in the position file.
std::string positionSection(std::string_view form);

/// Stores the placement of `form` in the position file when the window closes: the keys
/// `WindowState` ("0" for a minimised window), `Left`, `Top`, `Width`, `Height` in this order,
/// replacing the section's content in the file (other keys of the section stay before them).
/// False when the file cannot be written.
bool savePosition(const std::filesystem::path& file, std::string_view form,
                  const WindowPlacement& placement);

/// The placement of `form` when its window loads: `design` with each stored value that
/// passes its test put in. `WindowState` counts only as one character 0, 1 or 2; `Width`,
/// `Height`, `Left` and `Top` only when they convert to a number that fits 16 bits (so a
/// value above 32767 keeps the design value).
WindowPlacement restorePosition(const std::filesystem::path& file, std::string_view form,
                                const WindowPlacement& design);

/// The smallest normal-state size of a resizable window, in twips; nothing where none holds.
struct MinimumSize
{
    std::optional<long> width;
    std::optional<long> height;
};
MinimumSize minimumSize(std::string_view form);

/// A size below the window's bound set back to the bound, as the window's resize does.
WindowPlacement enforceMinimumSize(std::string_view form, WindowPlacement placement);

/// The lines of a fresh position file: "[Config]", "version=" + version, and an empty line.
std::vector<std::string> freshPositionFileLines(std::string_view version);
/// Writes a fresh position file (Shift-JIS, CR LF). Throws the run's failure when it cannot.
void writeFreshPositionFile(const std::filesystem::path& file, std::string_view version);

/// What the start-up upkeep did to the position file.
enum class PositionFileUpkeep {
    /// The file exists and was written by 5.30 or later: left alone.
    Kept,
    /// The file was missing: written fresh.
    Created,
    /// Written by a version from 5.27 to below 5.30: deleted and written fresh.
    Recreated,
    /// Written by a version below 5.27: deleted, and, being missing then, written fresh.
    DeletedAndCreated,
};

/// The start-up upkeep of the position file. `lastVersion` is the version text read last
/// from the settings; the first test takes its leading number as it stands, the second
/// after removing every "t" and "k". A fresh file carries `runningVersion`.
PositionFileUpkeep maintainPositionFile(const std::filesystem::path& file,
                                        std::string_view lastVersion,
                                        std::string_view runningVersion);

} // namespace vornhale::settings
