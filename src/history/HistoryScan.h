#pragma once

#include "history/HamlogReader.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace vornhale::base {
class Trace;
class RunObserver;
} // namespace vornhale::base

namespace vornhale::settings {
class Options;
class SettingsFiles;
} // namespace vornhale::settings

namespace vornhale::history {

/// What the history step of a conversion did.
enum class HistoryStep
{
    Off,       ///< `Option04(0)`: no history work at all (no load, no lookup either)
    Kept,      ///< no scan: the master on disk stands (reused, or `Option01(0)` is off)
    Scanned,   ///< the database was scanned and a new master written
    OpenFailed ///< the database could not be opened: the program ends at once, silently
};

/// The modification time of a file as local time, "yyyy/mm/dd hh:mm:ss"; empty when the
/// file does not exist.
std::string fileDateTime(const std::filesystem::path& path);

/// `bak_qso_mas_file` of a kind (1 to 3): `Temp_Files` + "bak_qso.mas" + kind + "_". The
/// master on disk is this path with "p" behind it.
std::filesystem::path bak_qso_mas_file(const std::filesystem::path& Temp_Files, int kind);

/// The key of `Vornhale_fdt.ini` that holds the database's date-time at the last scan of a
/// kind (1 to 3); empty for another kind.
std::string dateTimeKey(int kind);

/// The scan of the operator's HAMLOG log into the history master of the chosen kind, and
/// the decision whether a scan is due.
///
/// Options read: `Option04` (the kind), `Option01` (member 0 on: the database is the source;
/// any other member index turns the scan off), `Check19`, `hamlog_hdb_dir`, `Start_date`,
/// `End_date`, and the three stored date-times. The working files `bak_1.txt` to
/// `bak_3.txt` lie in `drive_path`; the masters in `Temp_Files`.
///
/// The stored date-times are those of `settings` (read from and written to
/// `Vornhale_fdt.ini`) when given, else those of `options`. A scan sets the date-time of its
/// kind in both.
class HistoryScan
{
public:
    using ReaderFactory =
        std::function<std::unique_ptr<HamlogReader>(const std::filesystem::path&)>;

    HistoryScan(std::filesystem::path drive_path, std::filesystem::path Temp_Files,
                settings::Options& options, base::Trace& trace, base::RunObserver& observer,
                settings::SettingsFiles* settings = nullptr);

    /// Today's date (yyyymmdd) that an empty `End_date` takes; the system date unless set.
    void setToday(std::string yyyymmdd) { m_today = std::move(yyyymmdd); }
    /// The source of records; `makeHamlogReader` unless set.
    void setReaderFactory(ReaderFactory factory) { m_factory = std::move(factory); }

    /// The history step of `cmd_henkan`: finds the kind, reads the stored date-times, and
    /// scans and condenses when a scan is due. Throws failure::Failure on a failed scan (the
    /// previous master then stays in place).
    HistoryStep run();

    /// Whether a scan of `kind` is due: `Check19` on, or its master missing, or the
    /// date-time of `hamlog_hdb_dir` differing from the stored one of that kind.
    bool scanNeeded(int kind) const;

    /// `read_hl_hdb_1`, `read_hl_hdb_2`, `read_hl_hdb_3` for `kind` 1 to 3: records of the
    /// period (all of them, those with a card sent, those with a card received) into
    /// `bak_1.txt`, then the two closing lines. Stores the database's date-time first.
    /// Returns false when the open failed; throws failure::Failure when a read fails. The reader
    /// is closed on every way out.
    bool readDatabase(int kind, HamlogReader& reader);

    /// `sum_bak_2`: `bak_1.txt` sorted into `bak_2.txt`, one line per distinct key into
    /// `bak_3.txt`.
    void sum_bak_2();

    /// `sum_bak_3`: `bak_3.txt` into the master of `kind`, one line per call with its codes,
    /// then the line "ZZZ/ZZZZZZ,E2". The master is written under a temporary name and takes
    /// the place of the previous one only when complete and at least 10 bytes long; a
    /// shorter one is reported to the trace and throws failure::Failure.
    void sum_bak_3(int kind);

    std::filesystem::path bak_1() const { return m_drivePath / "bak_1.txt"; }
    std::filesystem::path bak_2() const { return m_drivePath / "bak_2.txt"; }
    std::filesystem::path bak_3() const { return m_drivePath / "bak_3.txt"; }
    /// The master file of a kind: `bak_qso_mas_file` with "p" behind it.
    std::filesystem::path master(int kind) const;

private:
    settings::Options& stored() const;

    std::filesystem::path m_drivePath;
    std::filesystem::path m_tempFiles;
    settings::Options& m_options;
    base::Trace& m_trace;
    base::RunObserver& m_observer;
    settings::SettingsFiles* m_settings;
    std::string m_today;
    ReaderFactory m_factory;
};

} // namespace vornhale::history
