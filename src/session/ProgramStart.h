#pragma once

#include "base/Dialogs.h"
#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "settings/SettingsFiles.h"
#include "tools/DataDownloads.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::session {

/// What the start-up of the settings decided.
struct StartDecision
{
    /// The environment settings must open before the main window.
    bool environmentFirst = true;
    /// How many of the nine folder and file settings are empty.
    int emptyFolderSettings = 0;
    /// The keys of those empty settings ("zlo_dir", "hamlog_hdb_dir", …), in the order of
    /// the environment settings.
    std::vector<std::string> emptyFolderKeys;
    /// The settings came from a version older than 5.27.
    bool upgradeFromOld = false;
    /// The last version read, its points removed, as a number (5.44 gives 544).
    long versionNumber = 0;
};

/// The start of the program up to the main window: folders, seeding, trace, the settings
/// files with their migration, the required files. The window and the command line run the
/// same steps; the window then shows the environment settings or the main window.
class ProgramStart
{
public:
    /// All references must outlive this object.
    ProgramStart(const base::ProgramFolder& folder, settings::SettingsFiles& files,
                 base::Trace& trace, base::Dialogs& dialogs);

    /// `Main` up to the point where a window opens: makes the folders, seeds a new program
    /// folder from `seedFrom` (files that are missing only), traces the settings files, runs
    /// the start-up of the settings files and returns its decision. When the main window
    /// may open at once, `ini_write_cfg` has run.
    StartDecision Main(const std::filesystem::path& seedFrom);

    /// The start-up of the settings files: the abandoned file, `Check_ver`, the reads, the
    /// migration of old versions, the position file, the count of empty settings, the zone
    /// mark; and the decision whether the environment settings open first.
    StartDecision startSettings();

    /// Creates missing settings files and reads them; migrates stored file dates of the old
    /// form into their own file.
    void Check_ver();

    /// The required files, in order; a missing one is shown in its dialog and the result is
    /// false: the program ends.
    bool Main2_bas_1();

    /// The end date that follows the clock, and the files the conversion needs
    /// (`file_Chk_con_name`, `get_need_files1`). False when the program must end, also after
    /// the download window opened for missing data files.
    bool Main2_bas_2();

    /// "DXCC_MAS.TXT", "MNG_Vornhale_full.TXT", "Vornhale.rmk1", "Vornhale.rmk2" in their
    /// folders; false after the dialog of the first one missing.
    bool file_Chk_con_name();

    /// Tells in one dialog which of `cty.dat`, `ardx.dat`, `arrl10.dat` the zLog folder
    /// lacks. Returns the names that are missing. With `inet_flag` "OK" the dialog offers to
    /// download them now: on "Yes" the download window opens with the rows of the missing
    /// files ticked, `inet_flag` is stored as "OK", and the start stops afterwards
    /// (`needFilesAbort`). A front end without a download window answers "No" unasked.
    std::vector<std::string> get_need_files1();

    /// What the front end does with the download window once the operator agreed: it gets
    /// the window loaded as from the start's check (the rows of missing files ticked).
    using DownloadWindow = std::function<void(tools::DataDownloads& window)>;
    /// Sets the download window of this front end; none (the default) answers the offer "No".
    void setDownloadWindow(DownloadWindow window) { m_downloadWindow = std::move(window); }
    /// Whether `get_need_files1` opened the download window, so that this start stops there.
    bool needFilesAbort() const { return m_needFilesAbort; }
    /// The caller mark `get_need_files1` left: "0" after "Yes", "1" after "No", empty else.
    const std::string& callerMark() const { return m_callerMark; }

    /// The orderly end of the program (`End_Shori_0`, `End_Shori`): stores the working copy
    /// of the settings, runs `tmp_file_Del` and deletes the scratch files of the program.
    /// With `deleteWorkingFiles` false the working files stay for inspection; the settings
    /// are stored all the same.
    void End_Shori(bool deleteWorkingFiles = true);

    /// `start_Get_Date`: with `use_system_date_flag` at 1 the end date becomes today.
    void start_Get_Date();

private:
    void traceSettingsFiles();
    void rewriteWithoutOldDates(std::string_view name);
    void moveOldDates();
    bool requiredFile(const std::filesystem::path& folderValue, std::string_view name,
                      std::string_view title, const std::vector<std::string_view>& text);

    const base::ProgramFolder& m_folder;
    settings::SettingsFiles& m_files;
    base::Trace& m_trace;
    base::Dialogs& m_dialogs;
    DownloadWindow m_downloadWindow;
    bool m_needFilesAbort = false;
    std::string m_callerMark;
};

/// The version text as a number: "t" and "k" removed, then the number it starts with.
double versionValue(std::string_view version);

/// Copies into `strPath` every file of `seedFrom` (folders included) that `strPath` lacks.
/// A user's own file is never overwritten. Returns the files copied, relative to the folder.
std::vector<std::filesystem::path> seedProgramFolder(const std::filesystem::path& strPath,
                                                     const std::filesystem::path& seedFrom);

/// Traces and returns the settings files whose writing failed since the last call.
std::vector<std::filesystem::path> traceWriteFailures(settings::SettingsFiles& files,
                                                      base::Trace& trace);

} // namespace vornhale::session
