#pragma once

#include "engine/RunContext.h"

#include <string>
#include <string_view>

namespace vornhale::engine {

class RemarkLayout;

/// The mode as the result carries it: RTTY, SSTV, PSK31, PSK63 for the logged short forms.
std::string normaliseMode(std::string_view mode);

/// The zone text of the remark for the trimmed received exchange `z` (before the contest
/// rule of `Check12`).
std::string zoneText(std::string_view z, std::string_view f_type, int zoneForm,
                     std::string_view zone_moji);

/// `Henkan_txt`: reads `zlog_2.txt`, settles route, manager, name, QTH, time, zone, state,
/// IOTA and both remarks per contact, and writes `Sort-in.csv` and `out_name_ham0`.
void Henkan_txt(RunContext& ctx, const RemarkLayout& layout);

/// `henkan_conv`: `Henkan_txt`, then the sort and the split into the contest file.
void henkan_conv(RunContext& ctx, const RemarkLayout& layout);

} // namespace vornhale::engine
