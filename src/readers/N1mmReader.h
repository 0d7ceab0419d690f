#pragma once

#include "readers/InputKinds.h"
#include "readers/ReaderContext.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace vornhale::readers {

/// The text that replaces `in_name` and `lblIn_name` when the export's first line does not
/// name the frequency as its third column.
inline constexpr std::string_view kNotN1mm = "N1NN Logger の ＊．mdb ﾌｧｲﾙではありません！";

/// The two tables of an N1MM Logger database that the open menus export.
inline constexpr std::string_view kDxlogTable = "DXLOG";
inline constexpr std::string_view kCurrentContestTable = "CurrentContest";

/// The name of the export of `table` in the working folder: "dxlog.csv" for "DXLOG",
/// "CurrentContest.csv" for "CurrentContest" (compared without regard to case). Empty for
/// any other name.
std::string exportNameOf(std::string_view table);

/// The shared second half of both open actions: reads the first line of the export
/// `run.mdb.mdb_csv_name`, removes every double quote and splits it at ",". Field 2 in upper
/// case must be "FREQ"; otherwise `in_name` and `lblIn_name` take `kNotN1mm` and the result is
/// false. A line of fewer than three fields is rejected the same way. Field 1 is compared with
/// "CALL" only for the trace. Throws Failure 53 when the export cannot be read.
bool testExportFirstLine(const ReaderContext& ctx);

/// `FileOpen_mdb_dxlog` and `FileOpen_mdb_CurrentContest` once the dialog has put the path into
/// `run.in_name`: deletes the export of an earlier run, exports `run.mdb.table` of the database
/// to `dxlog.csv` or `CurrentContest.csv` in the working folder (all columns in table order,
/// a first line of column names), sets `mdb_csv_name` and tests the first line. A usable file
/// makes the kind "mdb". Returns false on a rejection. Throws Failure 3343 for a file that is
/// no Access database, 3078 when the table is missing, 5 for a table other than the two.
bool FileOpen_mdb(const ReaderContext& ctx);

/// `henkan_mdb_2_t`: each row of the export after its first line, quotes removed and split at
/// ",", as one common QSO line; a row whose field 27 is "-1" is passed over. Date and time from
/// field 0, call 1, band from the frequency 2 (the band table, or with `Check17` the MHz text),
/// mode 4 ("PH", "USB", "LSB" give "SSB", "RTYY" "RTY"), reports 6 and 7, exchange 20. The
/// lines go to `zlog_0.txt`, adding one to `written_count` each, and then, sorted by date and
/// time, to `zlog_1.txt`. Throws Failure 9 for a row of fewer than 28 fields or a date and
/// time of the wrong shape.
void henkan_mdb_2_t(const ReaderContext& ctx);

/// N1MM Logger databases (`.mdb`): the open exports the chosen table and tests it, the reader
/// converts the export. The window's count is the export's.
class N1mmReader : public LogReader
{
public:
    OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) override;
    long countOpened(const InputState& run) const override;
    bool countsLines() const override { return false; }
    void read(const ReaderContext& ctx) override { henkan_mdb_2_t(ctx); }
};

} // namespace vornhale::readers
