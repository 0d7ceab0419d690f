#pragma once

#include "readers/ReaderContext.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::readers {

/// The band text of the zLog `.TXT` form for a Cabrillo frequency in kHz: the text before
/// the last three characters, and, when these are not "000", a point and the first of them;
/// then a text holding "1." becomes "1.9", one holding "3." becomes "3.5", and any other
/// with a point is cut before it. So 14025 gives "14", 3512 "3.5", 1830 "1.9", and 21025,
/// whose "21.0" holds "1.", gives "1.9" too. A text of three characters or fewer has nothing
/// before its last three.
std::string cabrilloTxtBand(std::string_view khz);

/// The zLog `.TXT` form of the QSO lines of a Cabrillo log, line by line. Each line is cut
/// into three character ranges (1 to 30, 31 to 55, 56 to the end), each normalised ten
/// times over and split at blanks. The two extra columns keep what the line before left
/// when the third range's highest token index is neither 3, 4 nor 5.
class CabrilloTxtForm
{
public:
    /// One `.TXT` line for a Cabrillo line holding "QSO:": month and day each between two
    /// blanks, the time and a blank, the call cut or padded to 11, the sent RST right-aligned
    /// to 3, the sent exchange cut or padded to 10, the received RST right-aligned to 3, the
    /// received exchange right-aligned to 8, the extra columns as they stand, two blanks and
    /// the band right-aligned to 6, the mode padded to 4, an empty points column of 4. Widths
    /// are Shift-JIS bytes; a right-aligned text longer than its column stands whole. Throws
    /// Failure 9 when a range lacks a token that is read, or the date has no two "-".
    std::string line(std::string_view qsoLine);

    /// The same line as `line`, appended to `out` (which keeps what it held before). Throws
    /// as `line` does; `out` may then hold part of the line.
    void appendLine(std::string_view qsoLine, std::string& out);

    /// The same as `appendLine` for an ASCII line whose runs of blanks and tabs are known:
    /// `edges` holds `count` pairs of their start and end offsets, none longer than 32
    /// characters (see `CabrilloLines::runEdges`).
    void appendLine(std::string_view qsoLine, std::string& out, const std::uint16_t* edges,
                    std::size_t count);

private:
    // The line from the tokens of its three ranges.
    void appendFromTokens(std::string& out);
    // The columns of the line when every token is ASCII.
    void appendAsciiColumns(std::string& out, std::string_view month, std::string_view day,
                            std::string_view time, std::string_view call, std::string_view sentRst,
                            std::string_view sentExchange, std::string_view rcvdRst,
                            std::string_view rcvdExchange, std::string_view mode);

    bool m_ascii = false; // the tokens are of an ASCII line

    std::string m_extra1, m_extra2;
    // Reused from line to line, so that a line allocates nothing once they have grown.
    std::vector<std::string_view> m_first, m_second, m_third;
    std::string m_band;
};

/// `cabrillo_2_zlog_txt`: writes the column title and the `.TXT` form of every line of
/// `in_name` holding "QSO:" to `in_name` with "." + extension replaced by "_cbr2zlogt.txt".
/// The file replaces an older one only when it is complete. Returns the path written.
/// Throws the failures of `CabrilloTxtForm::line`, the description naming the line (nothing
/// is written then), Failure 5 when the name would be the input's own, 53/75/57 when a file
/// cannot be read or written.
std::string cabrillo_2_zlog_txt(const ReaderContext& ctx);

} // namespace vornhale::readers
