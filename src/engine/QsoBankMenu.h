#pragma once

#include "engine/RunContext.h"

#include <filesystem>

namespace vornhale::engine {

/// `mnuQSOBank_Click`: writes the open input as QSOBank XML beside it, from the common QSO
/// lines only (no enrichment, no result files). A .ZLO log, a zLog text log and an RTCL text
/// log are first read again into `zlog_1.txt` by their readers; any other input exports the
/// `zlog_1.txt` that stands in the working folder. `lblShori` is cleared first and says
/// "　変 換 終 了" at the end. Returns the path of the XML file. Throws Failure when the reader
/// fails, as the reader's rules say; the writing itself handles its own failures.
std::filesystem::path mnuQSOBank_Click(RunContext& ctx);

/// Whether the export reads the input again for `kind` before writing (otherwise the
/// `zlog_1.txt` of the working folder stands as it is).
bool qsoBankReadsInput(readers::InputKind kind);

} // namespace vornhale::engine
