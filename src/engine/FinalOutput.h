#pragma once

#include "engine/RunContext.h"

#include <filesystem>
#include <optional>
#include <string>

namespace vornhale::engine {

class RemarkLayout;

/// What `count_No_QSL_MNG_2` counts in the reduced `out_name_ham0`: the records whose card
/// mark begins with "N" and with "M", and the mode of the last record.
struct CardMarkCounts
{
    long noCard = 0;
    long manager = 0;
    std::string lastMode;
};

/// `count_No_QSL_MNG`: reduces `out_name_con0`, then `out_name_ham0`, from twenty fields to
/// sixteen, choosing the remarks by the route and `Check23`; then `count_No_QSL_MNG_2`.
/// Returns what `count_No_QSL_MNG_2` counts in the reduced `out_name_ham0`, taken while it was
/// written, when every line of it was written as it stood (ASCII, each field in its quotes),
/// so that a reader gets back the very fields; nothing otherwise.
std::optional<CardMarkCounts> count_No_QSL_MNG(RunContext& ctx, const RemarkLayout& layout);

/// `count_No_QSL_MNG_2`: counts `no_qsl_kazu` and `m_kazu` in `out_name_ham0` and returns the
/// mode of its last record, which the log-order pass of the final step looks at. `known`, the
/// counts that the reduction took, spares the read of the file.
std::string count_No_QSL_MNG_2(RunContext& ctx, const std::optional<CardMarkCounts>& known = {});

/// The last step of a run: `_hn.csv` with `_h.csv` from `out_name_ham0`, then `_cn.csv` with
/// `_c.csv` from `out_name_con0`; sets the counters. The final files replace the previous
/// ones only when complete. `lastMode` is what `count_No_QSL_MNG_2` returned.
void makeFinalFiles(RunContext& ctx, const RemarkLayout& layout, const std::string& lastMode);

/// `Out_Henkan_Result`: the report in `Henkan_Result`. Returns its path.
std::filesystem::path Out_Henkan_Result(RunContext& ctx);

} // namespace vornhale::engine
