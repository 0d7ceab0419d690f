#pragma once

#include "base/QsoLine.h"
#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vornhale::readers {

/// The text that replaces `in_name` and `lblIn_name` when a file is not an ADIF log.
inline constexpr const char* kNotAdif = "ADIF ﾌｧｲﾙではありません！";

/// The value of a tag found by position, not by parsing: `tag` is the opening text with its
/// ":" ("<MODE:"), found at character p of `record`; the length is the one character at
/// p + its length, the value starts two places behind it. A two-digit length or a type
/// letter therefore shifts the value (`<FREQ:10>` reads ">", `<CALL:6:S>` reads "S>…").
/// Nothing when the tag is not in the record. Throws Failure 5 for a negative length.
std::optional<std::string> adifValue(std::string_view record, std::string_view tag);

/// What the records of an ADIF log give, read by a fixed scan of tags. Values of a tag that
/// a record lacks keep what the record before left, except the frequency, the band text and
/// the values kept only for themselves, which are cleared for each record.
struct AdifValues
{
    std::string call, year, month, day, time, band, freq, rst_sent, rst_rcvd, stx, rcvd_exchange,
        mode;
    /// Read and kept, used by no later stage.
    std::string cqz, ituz, adi_state, cnty, comment, qsl_sent, qsl_sent_mark, qsl_rcvd_mark,
        adi_iota, dxcc;
    /// "0" for 160 m, "1" 80, "2" 40, "3" 20, "4" 15, "5" 10 m; kept where no rule sets it.
    std::string band_digit;

    /// One record, joined and upper-cased: clears the per-record values, reads every tag
    /// (the call sign even without its tag, from the start of the text), appends the
    /// exchanges to the reports, normalises the mode, derives the frequency from a band in
    /// metres when none was given, and cuts the reports to 3 characters (2 for SSB).
    /// Throws Failure 5 for a negative length.
    void take(std::string_view record);

    /// Puts the record into the common line: the frequency goes to the band and the
    /// frequency fields alike. Operator, memo and received exchange are left as they are.
    void fill(base::QsoLine& q) const;

    bool operator==(const AdifValues&) const = default;
};

/// `FileOpen_adi` once a file is chosen: the file is read until a line holding
/// "<RST_SENT:" (in upper case); with one the kind is "adi", without `in_name` and
/// `lblIn_name` take `kNotAdif`. Returns false on a rejection. Throws Failure 53 when the
/// file cannot be read.
bool FileOpen_adi(InputState& run, const std::filesystem::path& path);

/// `count_in_name_adi`: when the kind is "adi", counts each line of `in_name` once for
/// holding "<CALL:" and once for holding "<call:" (as written) into `line_count`, and shows
/// the count followed by " 件" in `Label39`. Returns the count.
long count_in_name_adi(const ReaderContext& ctx);

/// `henkan_adi_2_t`: skips a header of up to 20 lines ending at "<EOH>" (without one, those
/// 20 lines are gone), then writes one common QSO line to `zlog_1.txt` for each record of up
/// to 20 lines ending at "<EOR>" or at the end of the file, adding one to `written_count`
/// for each. No operator filter. Throws Failure 5 for a negative length, the description
/// naming the record.
void henkan_adi_2_t(const ReaderContext& ctx);

/// ADIF logs: the open action `FileOpen_adi` with its count and the reader `henkan_adi_2_t`.
class AdifReader : public LogReader
{
public:
    OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) override;
    void read(const ReaderContext& ctx) override { henkan_adi_2_t(ctx); }
};

} // namespace vornhale::readers
