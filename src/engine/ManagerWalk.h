#pragma once

#include "engine/ReferenceData.h"
#include "engine/RunContext.h"
#include "manager/BatchManagerWalk.h"

#include <functional>
#include <vector>

namespace vornhale::engine {

/// The walk's options as the program holds them: `Check1` of the walk's window from
/// `Get_MNG_use_web` (empty meaning on), `Check18` and `Option10` of the main window.
manager::WalkOptions walkOptionsOf(const settings::Options& options);

/// The grid a walk leaves.
struct ManagerWalkResult
{
    std::vector<manager::WalkRow> rows; ///< from grid row 1
    long gridRows = manager::BatchManagerWalk::kInitialGridRows;
};

/// `mnuGet_MNG_Click`: walks the calls of the opened input (`ctx.run.in_name`, of kind "all",
/// "txt", "zlo" or an RTCL text "log") without converting anything, after loading the manager
/// master when the program has not loaded it yet, and returns the grid. The web search is the
/// call-directory search of `Vornhale_web.ini`, made without pauses. Afterwards the page files of
/// that search with "_?" behind their name are deleted and `Label1` shows "ＭＮＧ取得終了".
/// `stopRequested` is asked where the walk yields: true ends the program
/// (failure::ProgramEnd). `rowWalked` is told each row as it joins the grid. Throws
/// failure::Failure when the input cannot be read, and 5 for a kind the walk does not read.
ManagerWalkResult mnuGet_MNG_Click(RunContext& ctx, ReferenceData& data,
                                   std::function<bool()> stopRequested = {},
                                   manager::BatchManagerWalk::RowWalked rowWalked = {});

} // namespace vornhale::engine
