#pragma once

#include "engine/Records.h"
#include "engine/RunContext.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace vornhale::engine {

/// The line that ends both files of single and multiple stations, so that each holds at
/// least one record. It reads back as a full sort record of the station "AAAAAA".
inline constexpr const char* kSentinel =
    "AAAAAA, ,566A, ,28,CW, ,J, , ,001211,0218U,599,599,Taiwan, , , , , , , ,AAAAAA";

/// `sort_`: sorts `in` into `out` by the key columns (see text::sortLinesByKey). A sort that
/// fails leaves no output; the stage that reads it next fails then.
void sort_(RunContext& ctx, int start, int length, bool descending,
           const std::filesystem::path& in, const std::filesystem::path& out);

/// The final sort key of a record for `sort_kind` 1 to 4. `frequencies` (`Check17`): the
/// band column holds frequencies, which are then not cut at their point.
std::string sortKey(const SortRecord& record, int sort_kind, bool frequencies);
/// `sortKey` of a record whose fields are all ASCII, appended to `key`: the same bytes, formed
/// without temporaries. The fields are those of the sort record of the same names.
void appendAsciiSortKey(std::string& key, std::string_view call_key, std::string_view band_or_freq,
                        std::string_view mode, std::string_view q_date6, std::string_view q_time5,
                        std::string_view mng_pad, int sort_kind, bool frequencies);

/// `count_tan_fuku`: counts contacts, single and multiple stations of `Sort-out.csv`.
void count_tan_fuku(RunContext& ctx);
/// `Henkan_out_name_con`: `Sort-in.csv` into `out_name_con0`, in the log's order.
void Henkan_out_name_con(RunContext& ctx);
/// `temp_sep`: splits `Sort-out.csv` into single and multiple stations, then goes on with
/// `sort_wakeru_c` or `sort_wakenai_c`.
void temp_sep(RunContext& ctx);
/// `sort_wakeru_c`: single and multiple stations keyed and sorted apart, then `temp_marge`.
void sort_wakeru_c(RunContext& ctx);
/// `sort_wakenai_c`: both groups keyed and sorted together into `out_name_con0`.
void sort_wakenai_c(RunContext& ctx);
/// `temp_marge`: the sorted single stations, then the multiple ones, into `out_name_con0`.
void temp_marge(RunContext& ctx);

} // namespace vornhale::engine
