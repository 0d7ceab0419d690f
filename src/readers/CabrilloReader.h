#pragma once

#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"
#include "text/FileBytes.h"
#include "text/LineFile.h"

#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::readers {

/// The text that replaces `in_name` and `lblIn_name` when a file is not a Cabrillo log.
inline constexpr const char* kNotCabrillo = "Cabrillo ﾌｧｲﾙではありません！";

/// `line` with tabs, ideographic blanks (U+3000) and double blanks each replaced by one blank,
/// `passes` times over (double blanks first in each pass). A run of blanks longer than the
/// passes can fold stays as several blanks, which splitting turns into empty tokens.
std::string normaliseCabrilloBlanks(std::string_view line, int passes);

/// The tokens of a Cabrillo line: normalised `passes` times over, then split at every blank.
/// An empty text has no token at all.
std::vector<std::string> cabrilloTokens(std::string_view line, int passes);

/// The same tokens as `cabrilloTokens`, as views into `line` (the empty tokens of long blank
/// runs are empty views), replacing the contents of `tokens`. The views live as long as
/// `line`'s characters.
void cabrilloTokenViews(std::string_view line, int passes, std::vector<std::string_view>& tokens);

/// The first `limit` of the tokens of `cabrilloTokenViews` (all of them when there are fewer),
/// without looking at the rest of the line.
void cabrilloTokenViews(std::string_view line, int passes, std::vector<std::string_view>& tokens,
                        std::size_t limit);

/// The band of a frequency in kHz (`token`, read as BASIC's Val reads it), both ends of each
/// range included: 14025 gives "14". Empty for a value between the ranges or below them (a
/// band written in Cabrillo's own letters, such as 50).
std::string cabrilloBandOfKhz(std::string_view token);

/// The frequency of `token` (kHz) as MHz text: a point before its last three digits,
/// right-aligned in six columns (14025 gives "14.025", 7025 gives " 7.025"). A longer text
/// stands whole; a token of three characters or fewer gets the point in front of it.
std::string cabrilloFrequencyMhz(std::string_view token);

/// The lines of a Cabrillo log read once and shared by the passes over it: each line as
/// UTF-8 (an ASCII line is its own bytes, any other decoded from Shift-JIS), split as
/// `text::LineReader` splits them, and which of them hold "QSO:".
struct CabrilloLines
{
    std::shared_ptr<const text::FileBytes> source; ///< the bytes read, shared with the kept input
    std::string_view bytes;                    ///< the same
    std::vector<std::string_view> lines; ///< every line, views into `bytes` or `decoded`
    std::deque<std::string> decoded;     ///< the lines that are not ASCII, decoded
    std::vector<std::uint32_t> qsoLines; ///< indices of the lines holding "QSO:"
    bool ascii = true;                   ///< every byte of the file is ASCII

    /// Left by the reader for the `.TXT` form, which splits the same lines: for the line
    /// `qsoLines[k]`, the pairs `runEdges[runsFrom[k]]` to `runEdges[runsTo[k]]` are the
    /// start and end offsets of its runs of blanks and tabs, when the line is ASCII and no
    /// run is longer than 32 characters (every run is then one boundary between tokens,
    /// however many passes fold it and wherever a range of the line is cut); `runsFrom[k]`
    /// is `kNoRuns` for any other line. Empty when the reader has not read the lines.
    std::vector<std::uint16_t> runEdges;
    std::vector<std::uint32_t> runsFrom, runsTo;
    static constexpr std::uint32_t kNoRuns = 0xFFFFFFFFu;
};

/// The tokens of `line.substr(from, to - from)` as `cabrilloTokenViews` gives them with any
/// number of passes from 6 on, the first `limit` of them, from the runs of blanks and tabs of
/// the line (`edges`: `count` pairs of start and end offsets in the line, in order, none
/// longer than 32 characters), replacing the contents of `tokens`.
void cabrilloTokensFromRuns(std::string_view line, const std::uint16_t* edges, std::size_t count,
                            std::size_t from, std::size_t to, std::vector<std::string_view>& tokens,
                            std::size_t limit = static_cast<std::size_t>(-1));

/// The lines of `path`. With `fresh` the file is read anew, unless it is the kept input and
/// the last read was of its bytes as they still are; otherwise the last read is shared when
/// it was of the same file and the file's size and time of change are still those of that
/// read. Throws Failure 53 when the file cannot be read.
std::shared_ptr<CabrilloLines> cabrilloLines(const std::filesystem::path& path, bool fresh);

/// Lets go of the read that `cabrilloLines` keeps for sharing.
void forgetCabrilloLines();

/// `FileOpen_cbr` once a file is chosen: a first line holding "START-OF-LOG:" anywhere makes
/// the kind "cbr", sets `opened_as_cbr` and runs `check_cbr_iota` over the rest of the file;
/// otherwise `in_name` and `lblIn_name` take `kNotCabrillo`. Returns false on a rejection.
/// An empty file is rejected. Throws Failure 53 when the file cannot be read.
bool FileOpen_cbr(InputState& run, const std::filesystem::path& path);

/// `check_cbr_iota`: reads the lines of `log` from line `from` (from 0) to the end, or until a line
/// holding "QSO:" has in its token 8 one of "EU-", "AS-", "OC-", "AF-", "NA-", "NS-", "AN-" (tokens
/// after ten passes of `normaliseCabrilloBlanks`). A line with fewer than nine tokens cannot hold a
/// reference and is passed over.
bool check_cbr_iota(const CabrilloLines& log, std::size_t from);

/// `count_in_name_cbr`: when the kind is "cbr", counts the lines of `in_name` holding "QSO:"
/// into `line_count` and shows the count followed by " 件" in `Label39`. Returns the count.
long count_in_name_cbr(const ReaderContext& ctx);

/// `henkan_cbr_2_t`: each line of `in_name` after the first that holds "QSO:" as one common
/// QSO line in `zlog_1.txt`, adding one to `written_count` for each. Band by `Check17` (the
/// MHz text) or the band table (a frequency between the ranges keeps the band of the line
/// before); "PH" becomes "SSB", "RY" "RTY". Operator, memo, frequency and received exchange
/// stay empty, so with `Check02` and a name in `txtOp_name` every line is dropped. Throws
/// Failure 9 for a QSO line of fewer than 11 tokens or a date without two "-" (the
/// description names the line and its number), Failure 62 when the file has no first line.
void henkan_cbr_2_t(const ReaderContext& ctx);

/// Cabrillo logs: the open action `FileOpen_cbr` with its IOTA look and QSO count, and the
/// reader `henkan_cbr_2_t`. The `.TXT` form written at the end of a run is
/// `cabrillo_2_zlog_txt` (CabrilloTxtForm.h).
class CabrilloReader : public LogReader
{
public:
    OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) override;
    void read(const ReaderContext& ctx) override;
};

} // namespace vornhale::readers
