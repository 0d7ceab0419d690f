#pragma once

#include "readers/ReaderContext.h"

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::readers {

// The zLog texts made from RTCL logs: the `.ALL` text that a conversion of a binary log
// reads (`make_rtcl_log_to_zlog_all`), and the `.ALL` and `.TXT` texts that the makers write
// beside a log without a conversion. Widths are Shift-JIS bytes; a value is padded with
// blanks or cut to its column.

/// First line of every `.ALL` text made from an RTCL log.
std::string rtclAllHeader();

/// `in_name` with every ".log" replaced by `suffix`. A log named in capitals (`X.LOG`) has
/// the replacement made without regard to case, so that the name never stays the input's
/// own. Throws Failure 5 when it still would (a log whose name holds no ".log").
std::string rtclOutputName(std::string_view in_name, std::string_view suffix);

/// The caption of the menus that show the zLog texts of a text log (`mnuDisp_l2t`,
/// `mnuDisp_l2a`): the file name of `in_name` with ".log" replaced by `suffix` as
/// `rtclOutputName` replaces it; empty when the name holds no ".log".
std::string l2zCaption(std::string_view in_name, std::string_view suffix);

/// The `.ALL` line of one record of the binary decoder's working text (fields as
/// `rtcl_tmp` names them). `mode` is the mode column of the record before: a mode text that
/// the mode rule does not know keeps it, and the rule leaves its own in it.
std::string rtclAllLine(const std::vector<std::string>& record, std::string& mode);

/// The `.TXT` line of the same record: month, day, time, call 11, both reports and numbers,
/// the first multiplier, band, mode, points and the memo at column 73, as the `.TXT` reader
/// takes its columns.
std::string rtclTxtLine(const std::vector<std::string>& record, std::string& mode);

/// What a line of either zLog form is made of: texts of its own, or views.
template <typename Text> struct BasicZlogParts
{
    Text date; ///< yyyy/mm/dd
    Text time; ///< hh:mm
    Text call, sentRst, sentNr, rcvdRst, rcvdNr, multi1, multi2, band, mode, points, memo;
    bool wideMode = false; ///< the PSK modes take one column more
};
/// The parts of a line of the decoder's working text: views of the record's fields and of the
/// texts made of them, which it keeps (their room kept from record to record).
struct RtclRecordParts
{
    BasicZlogParts<std::string_view> view;
    std::string time, sentNr, rcvdNr, memo;
};

/// The `.ALL` lines of the decoder's working records one after another, as
/// `make_rtcl_log_to_zlog_all` makes them: a record whose mode text is none of the mode rule's
/// keeps the mode column of the record before.
class RtclAllLines
{
public:
    /// The line of `record`, its fields as the working text holds them; good until the next
    /// call. Throws Failure 62 when the record has fewer than `rtcl_tmp::kFields` fields.
    const std::string& of(std::span<const std::string_view> record);
    /// The mode column that the next record keeps when its own mode text is none of the rule's.
    const std::string& mode() const { return m_mode; }

private:
    std::string m_mode;
    RtclRecordParts m_parts;
    std::string m_line;
};

/// `make_rtcl_log_to_zlog_all`: each record of `rtcl_tmp.txt` in the working folder as a
/// `.ALL` line, into `zlog_01.txt` there and into `in_name` with ".log" replaced by
/// "_log2a.all"; both begin with `rtclAllHeader`. Returns the path of the `_log2a.all` text.
/// Throws Failure 5 when that name would be the input's own (nothing is written then),
/// Failure 62 when the last record lacks fields, Failure 53/75 when a file cannot be read
/// or written.
std::string make_rtcl_log_to_zlog_all(const ReaderContext& ctx);
/// Its line of the trace.
inline constexpr const char* kMakeRtclAllTrace = "Private sub make_rtcl_log_to_zlog_all()";

/// The `.ALL` text of the RTCL text log `run.in_name` of the form before version 3.00
/// (`mnu_rtcl_log2all`), in `in_name` with ".log" replaced by "_l2z.all"; returns its path.
/// Per record (a "QTC" record is not a contact and is left out): both reports "599", both
/// numbers the first 8 characters of the field without "599-" and "-", the date with "/",
/// mode "RTY", and the rig's frequency of a "[FRQ" note in kHz, in parentheses, as memo.
/// Throws as `make_rtcl_log_to_zlog_all`.
std::string mnu_rtcl_log2all(const ReaderContext& ctx);
/// The same in `.TXT` form with its column title, in "_l2z.txt" (`mnu_rtcl_log2txt`).
std::string mnu_rtcl_log2txt(const ReaderContext& ctx);
/// The makers for the form from version 3.00: the log's mode ("RTTY" as "RTY", "PSK31" and
/// "PSK63" in a wider column) and the frequency of field 13.
std::string mnu_rtcl_log2all_new(const ReaderContext& ctx);
std::string mnu_rtcl_log2txt_new(const ReaderContext& ctx);

/// Which text a maker of the binary generations writes.
enum class ZlogForm { All, Txt };

/// Decodes the binary RTCL log `log` of `kind` through the working file `tmp_log.csv` in the
/// log's folder (removed afterwards) into a zLog text: `.ALL` into the log's name with ".log"
/// replaced by "_log2z.all", or `.TXT` with its column title into "_log2z.txt". Returns the
/// path written. Throws as `decodeRtclLog` and `make_rtcl_log_to_zlog_all`.
std::string makeZlogFromBinary(const std::filesystem::path& log, InputKind kind, ZlogForm form,
                               base::Trace& trace);

} // namespace vornhale::readers
