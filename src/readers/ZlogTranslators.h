#pragma once

#include "readers/ReaderContext.h"

#include <string>
#include <string_view>

namespace vornhale::readers {

// The side outputs that turn a zLog text log into its other text form. Columns and widths
// are counted in Shift-JIS bytes, as the readers of both forms count them; "the last N
// characters" of a right-aligned field counts characters.

/// First line of a `.ALL` text written by the program.
std::string zt2aHeader();

/// Column title of a `.TXT` text.
inline constexpr std::string_view kZa2tTitle =
    "mon day time  callsign      sent         rcvd      multi   MHz mode pts memo";

/// `lblShori` when `zlog_all_2_zlog_txt` has written its text.
inline constexpr std::string_view kZa2tDone = "　変換終了";

/// One `.TXT` QSO line in `.ALL` form, with `year` (`txtYYYY`) in front of the date. Never
/// fails: a short line yields empty fields.
std::string zt2aLine(std::string_view txtLine, std::string_view year);

/// One `.ALL` QSO line in `.TXT` form, taken apart at blanks: a memo of several words keeps
/// its first word. Throws Failure 9 when the line has too few tokens (a blank line has none).
std::string za2tLine(std::string_view allLine);

/// `zlog_txt_2_zlog_all`: writes the `.TXT` log `ctx.run.in_name` in `.ALL` form to
/// `in_name` with "." + extension replaced by "_zt2a.all", replacing an older one only when
/// the whole text is written. The year comes from the option `txtYYYY`. Returns the path
/// written. Throws Failure 62 when the input is empty, Failure 5 when the name would be the
/// input's own, Failure 53/75/57 when a file cannot be read or written.
std::string zlog_txt_2_zlog_all(const ReaderContext& ctx);

/// What `zlog_all_2_zlog_txt` leaves for the window.
struct Za2tResult
{
    std::string path;          ///< the text written
    bool mnuDisp_za2t = false; ///< `mnuDisp_za2t` is to be enabled
};

/// `zlog_all_2_zlog_txt`: writes the `.ALL` log `ctx.run.in_name` in `.TXT` form to `in_name`
/// with "." + extension replaced by "_za2t.txt", replacing an older one only when the whole
/// text is written, then shows `kZa2tDone`. Throws Failure 9 for a line with too few tokens
/// or a blank line (nothing is written then), and the failures of `zlog_txt_2_zlog_all`.
Za2tResult zlog_all_2_zlog_txt(const ReaderContext& ctx);

} // namespace vornhale::readers
