#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace vornhale::base {
class Trace;
class RunObserver;
} // namespace vornhale::base

namespace vornhale::history {

/// `Check_JA_club` (`Check10`): whether a station counts as a JA club station. The call is
/// taken in its six-column form (padded with blanks, or cut); it counts when its first
/// character is "J" and its fourth "Y" or "Z". The length test of the old form (not 5) looks
/// at the six-column form and so never stops anything.
bool Check_JA_club(std::string_view base_call);

/// `Full_call_key` of a result record: the main call alone (trimmed) when `call_ext` trims
/// to empty; else main call, "/", other part; or other part, "/", main call when `rmks1` or
/// `rmks2` holds "$DX".
std::string Full_call_key(std::string_view call_key, std::string_view call_ext,
                          std::string_view rmks1, std::string_view rmks2);

/// The result files of a run and the working folder for the temporary copies.
struct ResultFiles
{
    std::filesystem::path out_name_con0; ///< `_c0.csv`, twenty-field result records
    std::filesystem::path out_name_ham0; ///< `_h0.csv`, twenty-field result records
    std::filesystem::path drive_path;    ///< working folder
};

/// `all_JN_Chikan_full` (`Check4` without `Check3`): every record, in both files, of a full
/// call that has an "N" record in the contest file becomes "N" + `QSL_S` + two blanks, with
/// the remarks without the manager. The calls are taken from the contest file only, so an
/// "N" that stands only in the log-order file does nothing. A route "J" becomes `QSL_Q`.
/// Manager marks that stand alone ("@") are removed from the manager remarks. Throws
/// failure::Failure when a file is missing.
void all_JN_Chikan_full(const ResultFiles& files, std::string_view QSL_Q, std::string_view QSL_S,
                        base::Trace& trace);

/// `all_NJ_Chikan_full` (`Check3`): every record of a full call that has a record other than
/// "N" in the log-order file gets the normal route: in the log-order file `qsl3` becomes
/// `QSL_Q` + `QSL_S` + a blank; in the contest file only its first character becomes
/// `QSL_Q`, and that file is searched by the main call alone (so a portable call there is
/// not matched). A record with a manager ("@" in a manager remark) gets "M" first and the
/// manager remarks. Throws failure::Failure when a file is missing.
void all_NJ_Chikan_full(const ResultFiles& files, std::string_view QSL_Q, std::string_view QSL_S,
                        base::Trace& trace);

/// `No_QSL_moji_ReWrite` (when `No_QSL_moji` is not "N"): `out_name_ham0` to `out_name_ham`
/// and `out_name_con0` to `out_name_con`, each `qsl3` that begins with "N" becoming
/// `No_QSL_moji`, its second character and a blank. The records may have any number of
/// fields (the eleventh is `qsl3`). With `reportOn`
/// (`Check21`) the two opening lines go to the trace.
/// Throws failure::Failure when a file is missing.
void No_QSL_moji_ReWrite(const std::filesystem::path& out_name_ham0,
                         const std::filesystem::path& out_name_ham,
                         const std::filesystem::path& out_name_con0,
                         const std::filesystem::path& out_name_con, std::string_view No_QSL_moji,
                         bool reportOn, base::Trace& trace, base::RunObserver& observer);

} // namespace vornhale::history
