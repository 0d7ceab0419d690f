#pragma once

#include "base/QsoLine.h"
#include "base/Trace.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::tools {

/// The QSOBank upload file: the common QSO lines of `zlog_1.txt` as XML, one element a line,
/// no indentation. Nothing is escaped for XML: a "&" or "<" in a field goes into the file as
/// it is. The file is CP932 with CR LF line ends, whatever its declaration says.
class QsoBankExport
{
public:
    /// The output name: the input's stem (path up to and including the point before the
    /// extension) with "QSOBank.xml" behind it, so `test.all` gives `test.QSOBank.xml`.
    static std::string fileName(std::string_view stemWithPoint);

    /// Writes the XML of `zlog_1` into `out`, replacing a former file only when complete.
    /// A record is written before the end of the input is tested, so an empty (or missing)
    /// `zlog_1` gives one empty record. A failure is written to the trace ("エラー発生 ：　"
    /// and the number) and the export goes on as far as it can; nothing is thrown.
    static void write(const std::filesystem::path& zlog_1, const std::filesystem::path& out,
                      base::Trace& trace);

    /// The `qso_record` block of one contact, eight lines from "<qso_record>" to
    /// "</qso_record>". Every value is trimmed; `frequency` is `q_freq`, or `q_band` when
    /// `q_freq` is blank.
    static std::vector<std::string> record(const base::QsoLine& q);

    /// "yyyy/mm/dd hh:mm:00 UTC": the year, the month and the day as two digits with a
    /// leading zero, then the first two and the last two characters of the time, as the log
    /// holds it (no time conversion), so "0905" and "09:05" both give "09:05".
    static std::string daytime(const base::QsoLine& q);

    /// The mode as QSOBank names it: "RTY" and "TTY" give "RTTY"; "STV" and "SST" "SSTV";
    /// "PSK", "PS3", "PS31", "PSK3" "PSK31"; "PS6", "PS63", "PSK6" "PSK63"; any other stays.
    static std::string mode(std::string_view q_mode);
};

} // namespace vornhale::tools
