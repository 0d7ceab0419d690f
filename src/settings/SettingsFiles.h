#pragma once

#include "base/Version.h"

#include "settings/Options.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vornhale::settings {

/// The running version, as the settings files carry it.
using base::kProgramVersion;

/// The settings files of the program folder and their readers and writers. The values live
/// in an `Options` that this object reads into and writes from; a read replaces the values
/// of the keys it reads, a write copies them out.
///
/// Like the entry points of old, every read and write selects the current file, and the
/// option readers and writers select the current option section, so the inner routines
/// (`readOptionKeys`, `writeOptionKeys`) act on whichever option file was selected last.
///
/// A missing file reads as all-empty keys. A write that fails is not an error here: it is
/// recorded, and `takeWriteFailures` hands the paths to whoever traces or reports them.
class SettingsFiles
{
public:
    /// `strPath` is the program folder; `options` is the memory of the settings and must
    /// outlive this object.
    SettingsFiles(std::filesystem::path strPath, Options& options);

    /// `strPath` + `name`.
    std::filesystem::path file(std::string_view name) const;
    bool exists(std::string_view name) const;

    Options& options() { return m_options; }
    const Options& options() const { return m_options; }

    // Option files: `Vornhale_new.ini` (the one that counts) and `Vornhale.ini` (the working
    // copy within a run).
    void ini_read_new();
    void ini_write_new();
    void ini_read_old();
    void ini_write_old();
    /// The inner routines: all option keys from or to the current file and sections.
    void readOptionKeys();
    void writeOptionKeys();

    // Environment, `Vornhale_cfg.ini`. The read does nothing but select the file when the
    // file does not exist.
    void ini_read_cfg();
    void ini_write_cfg();

    // Stored file dates, `Vornhale_fdt.ini`, and the saved zone mark, `Vornhale_Zone_moji.ini`.
    void ini_read_fdt();
    void ini_write_fdt();
    void ini_read_zone_moji();
    void ini_write_zone_moji();

    /// The date the defaults take as today, eight digits; the system date unless set.
    void setToday(std::string yyyymmdd) { m_today = std::move(yyyymmdd); }
    std::string today() const;
    /// The root under which the defaults look for the zLog and HAMLOG folders ("zLog/",
    /// "Program Files/zLog/", "Hamlog/", "Program Files/Hamlog/"); the file-system root of
    /// the program folder unless set.
    void setDriveRoot(std::filesystem::path root) { m_driveRoot = std::move(root); }

    /// The defaults of the environment keys (writes nothing). Tests the disk for the zLog and
    /// HAMLOG folders and for the masters in the program folder.
    void make_Vornhale_cfg_ini();
    /// The defaults of the option keys and today's date values, then `ini_write_new`.
    void make_Vornhale_new_ini();
    /// The values `make_Vornhale_new_ini` sets, for `today` ("yyyymmdd"): the option keys,
    /// the unstored `Check13` and the environment values that win on a first start.
    static std::vector<std::pair<std::string, std::string>> optionDefaults(std::string_view today);

    /// The `restart` marker: true only when the last option read found exactly "restart".
    bool restartMarker() const { return m_restart; }
    void clearRestartMarker() { m_restart = false; }

    /// The version text read last from any settings file (empty before the first read).
    const std::string& lastVersion() const { return m_lastVersion; }
    void setLastVersion(std::string version) { m_lastVersion = std::move(version); }

    /// Switches set by the environment read: a folder setting "使用しない" turns the lookup off.
    bool nameLookupOn() const { return m_nameLookupOn; }
    bool qthLookupOn() const { return m_qthLookupOn; }

    /// Values that the environment defaults set without a key.
    const std::filesystem::path& provinceMasterFolder() const { return m_provFolder; }
    const std::filesystem::path& dxccMasterPath() const { return m_dxccPath; }

    /// The current file (by bare name) and sections, as the last entry point left them.
    const std::string& currentFile() const { return m_currentFile; }
    const std::string& currentOptionSection() const { return m_optionSection; }
    const std::string& currentEnvironmentSection() const { return m_environmentSection; }

    /// The files whose writing failed since the last call, in order.
    std::vector<std::filesystem::path> takeWriteFailures();
    /// Called at each failed write, as it happens, besides the record above.
    void setWriteFailureHandler(std::function<void(const std::filesystem::path&)> handler)
    {
        m_onWriteFailure = std::move(handler);
    }
    /// Records a failed write of a settings file made outside these writers (a migration).
    void noteWriteFailure(std::filesystem::path file);
    /// Brackets every write of a settings file, from the read of the file being updated to
    /// its save: `take` before, `release` after. The owner of the program folder takes its
    /// hold there, so that a run in another process never writes the same file in between.
    void setWriteHold(std::function<void()> take, std::function<void()> release)
    {
        m_takeHold = std::move(take);
        m_releaseHold = std::move(release);
    }

    /// Which file holds a key, by its bare name ("Vornhale_new.ini", "Vornhale_cfg.ini",
    /// "Vornhale_fdt.ini", "Vornhale_Zone_moji.ini"); empty for a name that no settings file
    /// stores. `version` and `restart` are written by the program itself and count as none.
    static std::string fileOfKey(std::string_view key);
    /// Every stored key of the option files and of the environment, in the order of writing.
    static std::vector<std::string> optionFileKeys();
    static std::vector<std::string> environmentKeys();

    /// Before a write and after a read of the widths lists: a leading comma gets a "0" in
    /// front, then one left-to-right pass turns each ",," into ",0,". A longer run of commas
    /// keeps every second gap open.
    static std::string normaliseWidths(std::string_view widths);

private:
    void selectFile(std::string_view name);
    void saveProfile(class ProfileFile& file);
    class WriteHold;

    std::filesystem::path m_strPath;
    Options& m_options;
    std::string m_currentFile = "Vornhale_new.ini";
    std::string m_optionSection = "Vornhale_new.ini";
    std::string m_environmentSection = "Vornhale_cfg.ini";
    std::string m_lastVersion;
    bool m_restart = false;
    bool m_nameLookupOn = true;
    bool m_qthLookupOn = true;
    std::filesystem::path m_provFolder;
    std::filesystem::path m_dxccPath;
    std::vector<std::filesystem::path> m_writeFailures;
    std::function<void(const std::filesystem::path&)> m_onWriteFailure;
    std::function<void()> m_takeHold, m_releaseHold;
    std::string m_today;
    std::filesystem::path m_driveRoot;
};

} // namespace vornhale::settings
