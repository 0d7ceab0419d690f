#pragma once

#include "base/Dialogs.h"
#include "base/ProgramFolder.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "readers/ReaderContext.h"
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

using readers::LayoutUse;

/// The seven counters of the result grid.
struct Counters
{
    std::int32_t qso_kazu = 0, fuku_kazu = 0, tan_kazu = 0, calls_kazu = 0, no_qsl_kazu = 0,
                 m_kazu = 0, name_kazu = 0;
};

/// Values of one conversion: set by the open step and the driver, read and changed by the
/// stages. A value that a rule leaves unassigned keeps what the previous record left.
struct RunState : readers::InputState
{
    std::string reportPath;  ///< the report of the run, when one was written
    bool keep_work = false;  ///< leave the working files for inspection (command line)
    /// The result list of the web search belongs to this input, so its viewer
    /// (`mnuDisp_Get_Mng_result`, `cmdDisp_Get_Mng_result`) is enabled after the run.
    bool webResultsViewable = false;
    std::string QSL_Q = " ";    ///< route mark of an ordinary bureau card
    std::string QSL_S = " ";    ///< the "sent" mark; one blank after a no-card record
    std::string fixedRemark1, fixedRemark2; ///< the fixed remark texts `txtRmks1`, `txtRmks2`
    std::string Zone_moji;      ///< zone label of the remark
    std::string Prov_moji;      ///< province label of the remark
    Counters counters;
    std::int16_t sort_wake = 1;
    std::int16_t sort_kind = 1;
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
    base::ProgramFolder folder;
    base::Trace& trace;
    base::RunObserver& observer;
    base::Dialogs& dialogs;
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

    /// What the readers and open actions see of the run.
    operator readers::ReaderContext()
    {
        return readers::ReaderContext{options, trace, observer, dialogs, folder.drive_path, run,
                                      folder.strPath};
    }
};

} // namespace vornhale::engine
