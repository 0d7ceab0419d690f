#pragma once

#include "app/Dialogs.h"
#include "app/ProgramFolder.h"
#include "app/RunObserver.h"
#include "app/Trace.h"
#include "readers/ExchangeAnalysis.h"
#include "readers/OutputNames.h"
#include "readers/ZloRecord.h"
#include "settings/Options.h"
#include "settings/SettingsFiles.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace vornhale::reference {
class EntityLookup;
}

namespace vornhale::engine {

class RecordLookups;

/// Which remark items the two layouts use: an item is used when its caption stands in a
/// cell of either layout.
struct LayoutUse
{
    bool memo = false, memo_eq = false, op = false, op_pct = false, iota = false, zone = false,
         state = false, calls = false;
};

/// The seven counters of the result grid.
struct Counters
{
    std::int32_t qso_kazu = 0, fuku_kazu = 0, tan_kazu = 0, calls_kazu = 0, no_qsl_kazu = 0,
                 m_kazu = 0, name_kazu = 0;
};

/// Values of one conversion: set by the open step and the driver, read and changed by the
/// stages. A value that a rule leaves unassigned keeps what the previous record left.
struct RunState
{
    std::string in_name;     ///< full path of the input log (or the rejection message)
    std::string chosen_name; ///< the path the operator chose, restored after a reader
    std::string f_type;      ///< "zlo", "txt", "all", "log", …
    std::string file_letter; ///< "A" or "T"
    std::string lblIn_name;  ///< caption of the input-name label
    std::string Label37;     ///< caption of the input count ("123件")
    std::string cont_name;   ///< contest name of a .ZLO log, empty otherwise
    readers::OutputNames names;       ///< result names derived from `in_name`
    std::string reportPath;  ///< the report of the run, when one was written
    bool keep_work = false;  ///< leave the working files for inspection (command line)
    std::int32_t written_count = 0;
    long line_count = 0;
    std::string op_filter_name; ///< `txtOp_name`, copied before the readers run
    std::string QSL_Q = " ";    ///< route mark of an ordinary bureau card
    std::string QSL_S = " ";    ///< the "sent" mark; one blank after a no-card record
    std::string Rmks1_text, Rmks2_text; ///< the fixed remark texts `txtRmks1`, `txtRmks2`
    std::string Zone_moji;      ///< zone label of the remark
    std::string Prov_moji;      ///< province label of the remark
    LayoutUse use;
    Counters counters;
    bool use_log_zone = false;   ///< the log's received exchange is a zone
    bool zlo_iota = false;       ///< a .ZLO log's contest carries IOTA numbers
    std::int16_t sort_wake = 1;
    std::int16_t sort_kind = 1;
    /// What the open of a `.ZLO` log and the exchange analysis left for the run.
    readers::ZloOpenState zlo;
    readers::ExchangeAnalysis exchange;
};

/// What lasts while the program runs.
struct ProgramState
{
    bool masters_ready = false;
};

/// Everything a stage of a conversion works with.
struct RunContext
{
    settings::Options options;
    app::ProgramFolder folder;
    app::Trace& trace;
    app::RunObserver& observer;
    app::Dialogs& dialogs;
    ProgramState& program;
    reference::EntityLookup& entities;
    RunState run;
    /// Per-contact lookups of the record conversion; none (every answer "not found") when
    /// null.
    RecordLookups* lookups = nullptr;
    /// The settings files that the run writes at its fixed moments; nothing is written when
    /// null. They hold the stored values, so a value changed for this run only stays out.
    settings::SettingsFiles* settings = nullptr;

    std::filesystem::path work(const char* name) const { return folder.drive_path / name; }
};

} // namespace vornhale::engine
