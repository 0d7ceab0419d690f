#pragma once

#include "base/Dialogs.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "readers/ExchangeAnalysis.h"
#include "readers/InputKind.h"
#include "readers/OutputNames.h"
#include "readers/ZloRecord.h"
#include "settings/Options.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace vornhale::readers {

/// Which remark items the two layouts use: an item is used when its caption stands in a
/// cell of either layout.
struct LayoutUse
{
    bool memo = false, memoEquals = false, op = false, opPercent = false, iota = false,
         zone = false, state = false, calls = false;
};

/// What the open of an N1MM Logger database leaves for the run.
struct MdbOpenState
{
    /// The table the open exports: "DXLOG" (all contacts, `mnuOpen_MDB_dxlog`) or
    /// "CurrentContest" (`mnuOpen_MDB_CurrentContest`).
    std::string table = "DXLOG";
    std::string mdb_csv_name; ///< the export in the working folder, read by the run
};

/// What the open of a CTESTWIN log leaves for the run.
struct CtestwinOpenState
{
    std::string lg8_name;           ///< the `.lg8` path, as the converter gave it back
    std::string ctestwin_all_name;  ///< the converted `.ALL` text beside the `.lg8`
    std::string ctestwin_qso_count; ///< the count text the converter stored
};

/// What the open step and the reader of a run decide and leave for the stages after them.
struct InputState
{
    std::string in_name;     ///< full path of the input log (or the rejection message)
    std::string chosen_name; ///< the path the operator chose, restored after a reader
    InputKind kind = InputKind::None;
    std::string f_type;      ///< legacy text of `kind`: "zlo", "txt", "all", "log", …
    std::string file_letter; ///< "A", "T" or "Z"
    std::string lblIn_name;  ///< caption of the input-name label
    std::string Label37;     ///< caption of the input count ("123件")
    std::string Label39;     ///< the QSO or record count of a Cabrillo or ADIF log ("12 件")
    bool opened_as_cbr = false; ///< opened as Cabrillo: the run ends with its `.TXT` form
    bool cbr_has_iota = false;  ///< the Cabrillo log's exchanges hold IOTA references
    std::string cont_name;   ///< contest name of a .ZLO log, empty otherwise
    OutputNames names;       ///< result names derived from `in_name`
    std::int32_t written_count = 0;
    long line_count = 0;
    std::string op_filter_name; ///< `txtOp_name`, copied before the readers run
    LayoutUse use;
    bool use_log_zone = false; ///< the log's received exchange is a zone
    bool logIotaFlag = false;  ///< a .ZLO log's contest carries IOTA numbers
    /// What the open of a `.ZLO` log and the exchange analysis left for the run.
    ZloOpenState zlo;
    ExchangeAnalysis exchange;
    MdbOpenState mdb;
    CtestwinOpenState ctestwin;

    /// Sets `kind` and its legacy text together.
    void setKind(InputKind k)
    {
        kind = k;
        f_type = std::string(legacyText(k));
    }
};

/// What a reader and an open action work with: the run's option values, the trace, the
/// front end, the working folder and the input state. Nothing of the engine.
struct ReaderContext
{
    /// The option values of the run. An open action changes a value through `Options::set`,
    /// which tells the option model's subscribers.
    settings::Options& options;
    base::Trace& trace;
    base::RunObserver& observer;
    base::Dialogs& dialogs;
    /// The working folder (`drive_path`).
    std::filesystem::path drive_path;
    InputState& run;
    /// The program folder (`strPath`), where the exchange files with outside programs lie.
    std::filesystem::path strPath = {};

    std::filesystem::path work(const char* name) const { return drive_path / name; }
};

} // namespace vornhale::readers
