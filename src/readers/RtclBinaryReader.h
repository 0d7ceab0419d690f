#pragma once

#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::readers {

/// Record lengths of the binary RTCL logs: version 4.00 and version 4.30.
inline constexpr std::size_t kRtclV4RecordSize = 203;
inline constexpr std::size_t kRtclV430RecordSize = 209;

/// The record length of `kind` (LogV4 or LogV430).
std::size_t rtclRecordSize(InputKind kind);

/// The number of records of a file of `bytes` length: the length divided by the record
/// length, rounded to the nearest whole number, half to even.
long rtclRecordCount(std::uintmax_t bytes, std::size_t recordSize);

/// One row of the rig frequency table: raw values from `start` − 1 up to the next row's
/// start − 2 belong to it.
struct RtclRigRow
{
    std::int64_t start;
    std::int64_t baseHz;
    int divisor;
    int multiplier;
};

/// The rig frequency table, 1.8 MHz to 5600 MHz.
std::span<const RtclRigRow> rtclRigTable();

/// The frequency in Hz, as text, of a record with the raw rig value `raw` (read as a signed
/// 32-bit integer) and the band text `band`. A raw value of 0 (no rig) gives the base of the
/// band ("1.8" 1800000 … "5600" 5600000000). Otherwise the row that takes the value gives
/// its base plus the steps above its start (none at the start − 1 or below). A raw value
/// that no row takes (below the first row, or at or above two to the power 31, where the
/// rows from 50 MHz would lie) falls back to the base of the band; a band outside the list
/// gives "0".
std::string rtclHz(std::int32_t raw, std::string_view band);

/// The rounded kHz of a Hz text: the point put before its last three characters, plus 0.5,
/// whole part ("14085500" gives "14086").
std::string rtclRoundedKhz(std::string_view hz);

/// Points as the log codes them: the byte's decimal text read as a hexadecimal number
/// (18 gives 24).
long rtclPoints(std::uint8_t byte);

/// The fields of one binary record. Texts are decoded from Shift-JIS as they stand, blank
/// padding included: an ASCII text is a view of the record's own bytes, any other one a view
/// of its decoded form kept in `decoded`.
struct RtclBinaryRecord
{
    std::string_view number, band, mode, kept, call, sent_rst, sent1, sent2, rcvd_rst, rcvd1, rcvd2,
        multi1, multi2, multi3, op, memo;
    std::int32_t rig = 0;
    std::uint8_t dupe = 0;
    double when = 0;
    std::uint8_t points = 0;
    /// Every text field is ASCII without a double quote, so a record line holds it as it is.
    bool plain = true;
    /// The texts of other than ASCII, decoded, one place per field.
    std::array<std::string, 16> decoded;
};

/// Decodes a record of the generation of `kind` into `into`; `record` holds at least the
/// record length and must outlive the texts' use.
void decodeRtclRecord(std::string_view record, InputKind kind, RtclBinaryRecord& into);

/// Date "yyyy/mm/dd" and time "hhmmss" of a record's time stamp (days since 1899-12-30).
/// Throws Failure 6 for a value that is no date from the year 100 to 9999.
void rtclDateTime(double when, std::string& date, std::string& time);

/// The fields of a record in the decoder's working text, in order: number, band, date,
/// time, band, Hz, rounded kHz, mode, the kept text, call sign, sent RST, the two parts of
/// the sent number, received RST, the two parts of the received number, points, three
/// multipliers, the note ("-DUPE- " for a duplicate), operator, memo. The fields that the
/// record does not hold as they stand are made into this.
struct RtclWorkingFields
{
    std::string date, time, hz, khz, points;

    /// The fields of `record`, as views of it and of this; good until the next call.
    std::array<std::string_view, 23> of(const RtclBinaryRecord& record);
};

/// Field places in the decoder's working text, from 0.
namespace rtcl_tmp {
inline constexpr std::size_t kFields = 23;
inline constexpr std::size_t number = 0, band = 1, date = 2, time = 3, hz = 5, khz = 6, mode = 7,
                             call = 9, sent_rst = 10, sent1 = 11, sent2 = 12, rcvd_rst = 13,
                             rcvd1 = 14, rcvd2 = 15, points = 16, multi1 = 17, multi2 = 18,
                             multi3 = 19, note = 20, op = 21, memo = 22;
} // namespace rtcl_tmp

/// The decoder of the binary generations: every record of `bytes` from 1 to the rounded
/// record count (a short last record reads zero bytes past the end), except those whose
/// number text begins with "QTC", as one line of the working text at `out`. Returns the
/// lines written. Throws Failure 6 for a time stamp that is no date, Failure 75 when `out`
/// cannot be written.
long decodeRtclLog(std::string_view bytes, InputKind kind, const std::filesystem::path& out);

/// The decoder writing, in the same pass, the `.ALL` text that `make_rtcl_log_to_zlog_all`
/// makes of its working text, into `all` (replaced only when it is whole). True when it did;
/// false when a text field of a record holds a quote, which the working text cannot hold as it
/// stands: `all` is then left as it was, and the maker must read the working text. Throws as
/// `decodeRtclLog`.
bool decodeRtclLogWithAll(std::string_view bytes, InputKind kind, const std::filesystem::path& out,
                          const std::filesystem::path& all);

/// The texts of the version check, each put behind `in_name`.
inline constexpr std::string_view kNotRtclV4 = "　は RTCL ver 4.0 のｌｏｇ ファイルではありません";
inline constexpr std::string_view kNotBefore430 =
    "　は RTCL ver 4.30 より前のｌｏｇ ファイルではありません";
inline constexpr std::string_view kNotFrom430 =
    "　は RTCL ver 4.30 以降のｌｏｇ ファイルではありません";

/// The version check of the binary open menus on the file's bytes: empty when the file may
/// open as `kind`, otherwise which text refuses it. The first byte must be the digit "0";
/// the length must divide by the record length of `kind`.
std::string_view rtclVersionProblem(std::string_view bytes, InputKind kind);

/// RTCL binary logs of version 4.00 and 4.30, one open menu each: the version check, the
/// count of records; the decoder, `make_rtcl_log_to_zlog_all` and `a_2_t` over its text.
class RtclBinaryReader : public LogReader
{
public:
    /// A reader of `kind`, LogV4 or LogV430.
    explicit RtclBinaryReader(InputKind kind);
    static std::unique_ptr<LogReader> makeV4();
    static std::unique_ptr<LogReader> makeV430();

    /// The version check: a refusal shows its box and leaves the kind set, as the menu set
    /// it, and the path in `in_name`.
    OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) override;
    /// The records of the file plus one, so that the window shows the number of records.
    long countForLabel(const std::filesystem::path& path) const override;
    bool countsLines() const override { return false; }
    /// Decodes the log into `rtcl_tmp.txt` and the `_log2a.all` text beside the input, then
    /// reads that text with `a_2_t`. (A log whose texts hold a quote goes through
    /// `make_rtcl_log_to_zlog_all`, and `a_2_t` reads its `zlog_01.txt`.) Throws Failure 5 before
    /// writing anything when the `_log2a.all` name would be the input's own.
    void read(const ReaderContext& ctx) override;

private:
    InputKind m_kind;
};

} // namespace vornhale::readers
