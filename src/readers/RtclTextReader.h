#pragma once

#include "base/Dialogs.h"
#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace vornhale::readers {

/// The generation of an RTCL log as its open menu sets it (`rtcl_gen`): "old" for text logs
/// before version 3.00, "new" for text logs from 3.00 and binary logs from 4.00, "new430"
/// for binary logs from 4.30; empty for every other kind.
std::string_view rtcl_gen(InputKind kind);

/// The rig's frequency in a note of the form before version 3.00: the first 10 characters
/// without "[FRQ", trimmed ("[FRQ 14085] ..." gives "14085"); empty when the note holds no
/// "[FRQ".
std::string rtclNoteFrequency(std::string_view note);

/// The rig's frequency in field 13 of the form from version 3.00: its first 5 characters,
/// trimmed.
std::string rtclFieldFrequency(std::string_view field);

/// The title of the box about an RTCL text log of the other generation.
inline constexpr std::string_view kLogTypeTitle =
    "　　ＲＴＣＬのバージョン違いの　＊．ｌｏｇ　です！";

/// The text of that box for the input `in_name` and the generation word ("旧" or "新").
std::string logTypeText(std::string_view in_name, std::string_view word);

/// `disp_msg_logtype`: shows the box with the critical icon.
void disp_msg_logtype(base::Dialogs& dialogs, std::string_view in_name, std::string_view word);

/// `check_rcvd_log`: counts the commas of the first line of `run.in_name`. Eleven (the form
/// before version 3.00) opened as "new", or twelve (the form from 3.00) opened as "old",
/// shows `disp_msg_logtype` with the word of the file's own generation and returns true: the
/// open is refused. Any other count says nothing. Throws Failure 53 when the file cannot be
/// read.
[[nodiscard]] bool check_rcvd_log(const ReaderContext& ctx, std::string_view gen);

/// `henkan_log_2_t_old`: each record of the text log `run.in_name` (12 fields, read across
/// line ends) as one common QSO line in `zlog_1.txt`, adding one to `written_count` for each.
/// A record of kind "QTC" is passed over. The mode is always "RTY"; operator and memo stay
/// empty, so with `Check02` and an operator name every record is dropped. With `Check17`, a
/// note holding "[FRQ" gives the frequency ("[FRQ 14085" gives 14.085, "[FRQ 07025" gives
/// " 7.025"). Throws Failure 62 when the last record lacks fields.
void henkan_log_2_t_old(const ReaderContext& ctx);

/// `henkan_log_2_t_new`: the same for the form from version 3.00 (13 fields): date and time
/// from field 2, the call padded or cut to 12, the mode of field 12 ("RTTY" becomes "RTY"),
/// and with `Check17` the frequency of field 13 (" 14.085", " 7.025").
void henkan_log_2_t_new(const ReaderContext& ctx);

/// RTCL text logs, one open menu per generation: the generation test of the first line, the
/// kind "log", the exchange analysis; the reader of the generation.
class RtclTextReader : public LogReader
{
public:
    /// A reader of the generation of `kind`, LogOld or LogNew.
    explicit RtclTextReader(InputKind kind);
    /// The factories of the table of input kinds.
    static std::unique_ptr<LogReader> makeOld();
    static std::unique_ptr<LogReader> makeNew();

    OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) override;
    void read(const ReaderContext& ctx) override;

private:
    InputKind m_kind;
};

} // namespace vornhale::readers
