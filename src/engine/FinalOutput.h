#pragma once

#include "engine/RunContext.h"

#include <filesystem>
#include <string>

namespace vornhale::engine {

class RemarkLayout;

/// `count_No_QSL_MNG`: reduces `out_name_con0`, then `out_name_ham0`, from twenty fields to
/// sixteen, choosing the remarks by the route and `Check23`; then `count_No_QSL_MNG_2`.
void count_No_QSL_MNG(RunContext& ctx, const RemarkLayout& layout);

/// `count_No_QSL_MNG_2`: counts `no_qsl_kazu` and `m_kazu` in `out_name_ham0` and returns the
/// mode of its last record, which the log-order pass of the final step looks at.
std::string count_No_QSL_MNG_2(RunContext& ctx);

/// The last step of a run: `_hn.csv` with `_h.csv` from `out_name_ham0`, then `_cn.csv` with
/// `_c.csv` from `out_name_con0`; sets the counters. The final files replace the previous
/// ones only when complete. `lastMode` is what `count_No_QSL_MNG_2` returned.
void makeFinalFiles(RunContext& ctx, const RemarkLayout& layout, const std::string& lastMode);

/// `Out_Henkan_Result`: the report in `Henkan_Result`. Returns its path.
std::filesystem::path Out_Henkan_Result(RunContext& ctx);

} // namespace vornhale::engine
