#pragma once

#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"

#include <filesystem>
#include <string>

namespace vornhale::readers {

/// The text that replaces `in_name` and `lblIn_name` when a file is not a zLog text log.
inline constexpr const char* kNotZlogText = "zlogのﾃｷｽﾄﾌｧｲﾙではありません！";

/// The test of a zLog text log when it is opened: the first of the last three characters of
/// the name decides the form ("a"/"A": `.ALL`, "t"/"T": `.TXT`), and the first line must
/// begin as that form begins. Sets `run.f_type` to "all" or "txt"; on a mismatch puts the
/// rejection text into `run.in_name` and `run.lblIn_name`. A name of neither letter changes
/// nothing. Returns false when the file was rejected.
bool FileOpen_all_txt_set(InputState& run, const std::filesystem::path& path);

/// The operator of a zLog text line: the text between the first "%" (from two places behind
/// it) and the next "%", trimmed; empty when the line, up to its first NUL, holds no "%".
/// Without a second "%", `q_op` keeps what the previous line left in it.
void operatorRule(std::string_view line, std::string& q_op);

/// Reads the `.ALL` form of `run.in_name` into `zlog_1.txt`, one common QSO line per QSO
/// line, adding one to `written_count` for each. A CTESTWIN log ("lg8") is read from its
/// converted text, `ctestwin.ctestwin_all_name`. Throws Failure 62 when the file holds
/// nothing after its first line.
void a_2_t(const ReaderContext& ctx);

/// Reads the `.TXT` form into `zlog_1.txt`; the year comes from `txtYYYY`. Leaves
/// `written_count` alone. Throws Failure 62 on an empty file after the title line, and
/// Failure 9 on a blank line.
void t_2_t(const ReaderContext& ctx);

/// `a_2_t` when `file_letter` is "A", `t_2_t` otherwise.
void henkan_at_2_t(const ReaderContext& ctx);

/// zLog `.ALL` and `.TXT` logs: one open action (`FileOpen_all_txt_set`, which decides the
/// form by the name, then the exchange analysis) and one reader (`henkan_at_2_t`).
class ZlogTextReader : public LogReader
{
public:
    OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) override;
    void read(const ReaderContext& ctx) override;
};

} // namespace vornhale::readers
