#pragma once

#include "engine/RunContext.h"

namespace vornhale::engine {

/// One conversion from start to end, as the start button runs it: prepares the run, calls
/// `cmd_henkan`, then makes the final files. Throws Failure on any failure of a stage; the
/// caller takes the failure path.
void cmdStart_Click(RunContext& ctx);

class RemarkLayout;

/// The stages from the reader to the sort. Called only from `cmdStart_Click`.
void cmd_henkan(RunContext& ctx, const RemarkLayout& layout);

/// Reads `Option08` and `Option02` into `sort_wake` and `sort_kind`.
void sort_set_(RunContext& ctx);

/// Deletes the working files of a former run (and writes their names to the trace).
void tmp_file_Del(RunContext& ctx);

} // namespace vornhale::engine
