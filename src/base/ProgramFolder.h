#pragma once

#include <filesystem>
#include <optional>

namespace vornhale::base {

/// The program's own folder (`strPath`) and the places under it.
struct ProgramFolder
{
    std::filesystem::path strPath;     ///< ends in a separator
    std::filesystem::path drive_path;  ///< working folder, `<strPath>Work/`
    std::filesystem::path Temp_Files;  ///< `<strPath>Temp_Files/`
    std::filesystem::path Error_Log;   ///< `<strPath>Error_Log/`
    std::filesystem::path Henkan_Result; ///< `<strPath>Henkan_Result/`

    /// The folder set for a program folder, without touching the disk.
    static ProgramFolder at(const std::filesystem::path& home);

    /// The program folder: `home` when given, else `$VORNHALE_HOME`, else
    /// `$XDG_DATA_HOME/vornhale/`, else `.local/share/vornhale/` in the user's home folder
    /// (`userHomeFolder`: `$HOME`, else the user database's, so a run without `HOME` finds
    /// the same folder).
    static ProgramFolder resolve(const std::optional<std::filesystem::path>& home);

    /// Makes the program folder, the working folder and `Temp_Files` if missing.
    /// Throws Failure 75 when one cannot be made.
    void makeFolders() const;
};

} // namespace vornhale::base
