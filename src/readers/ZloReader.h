#pragma once

#include "base/Dialogs.h"
#include "readers/ReaderContext.h"
#include "readers/ExchangeAnalysis.h"
#include "readers/InputKinds.h"
#include "readers/ZloRecord.h"

#include <string>
#include <string_view>

namespace vornhale::readers {

/// How `read_zlo_head` ended.
enum class ZloHead {
    Read,        ///< the header was read and the analysis ran
    NoInput,     ///< `in_name` was empty; `lblIn_name` shows the request in red
    ProgramEnds, ///< the operator cancelled the question: the program ends on the spot,
                 ///< without the orderly end
};

/// `lblIn_name` when `read_zlo_head` finds no input.
inline constexpr std::string_view kZloNoInput = "入力ﾌｧｲﾙをﾒﾆｭｰより指定して下さい。";
/// `lblShori` (red) when the header has no contest name.
inline constexpr std::string_view kZloNoContestName = "　ｺﾝﾃｽﾄ名　取得不可能";
/// The title of the question about a header without a contest name.
inline constexpr std::string_view kZloNoNameTitle = "　　DAT ﾌｧｲﾙ よりcode、QTHの取得は不可能！";

/// The text of the question about a header without a contest name, for the input `in_name`.
std::string noNameDialogText(std::string_view in_name);

/// `no_name_in_header`: asks with retry and cancel. Returns true on retry (and sets
/// `zlo_name_missing`); false on cancel, after which the program ends on the spot.
[[nodiscard]] bool no_name_in_header(base::Dialogs& dialogs, std::string_view in_name,
                                     ZloOpenState& zlo);

/// `read_zlo_head`: reads the header record of `run.in_name`, sets `run.cont_name` ("…CQWW160…"
/// becomes "CQWW160 Contest") and shows it, asks when the header has no contest name, keeps
/// the record count (`Label37`, the total of the report), and runs `Check_Use_Item` and
/// `check_rcvd_zlo` with the layout keys of `ctx.options`. The zone and IOTA results reach
/// the run as `use_log_zone` and `logIotaFlag`. Throws Failure 53 when the file cannot be read.
/// The front end runs `lblRmks1_use_name_Check` and `lblRmks2_use_name_Check` after it.
[[nodiscard]] ZloHead read_zlo_head(const ReaderContext& ctx, ZloOpenState& zlo,
                                    ExchangeAnalysis& analysis);

/// The records of the binary log `run.in_name`: a `.ZLO` file as it stands, a `.ZLOX` file
/// (kind Zlox) as the `.ZLO` that zLog would have written for it. Throws Failure 53 when the
/// file cannot be read.
ZloFile openZloInput(const InputState& run);

/// The test of a `.ZLO` file in its open actions (`FileOpen_z`, `FileOpen_z_set`), once the
/// dialog has put the path into `run.in_name`: the kind (`kind`: Zlo, or Zlox for zLog's
/// extended log, which opens the same way), `f_type` "zlo", `file_letter` "Z", the two
/// recent paths, a fresh question, `read_zlo_head`; "REFコンテスト(DX)" ticks `Check13`.
/// `folderDialog` (`FileOpen_z_set`) runs `check_rcvd_zlo` once more and, with `Option02(2)` and
/// another file than before, `read_zlo_head` again. With `Check5` the front end runs
/// `read_cont_name_zlo` after it, then `Disp_in_name`.
[[nodiscard]] ZloHead openZloFile(const ReaderContext& ctx, ZloOpenState& zlo,
                                  ExchangeAnalysis& analysis, bool folderDialog,
                                  InputKind kind = InputKind::Zlo);

/// `read_zlo`: each QSO record of `run.in_name` as one common QSO line in `zlog_1.txt`,
/// adding one to `written_count` for each line written. Mode, band and frequency keep what
/// the record before left where a rule assigns nothing. Throws Failure 6 for a report whose
/// high byte is 128 or above and for a time stamp that is no date, Failure 53 when the file
/// cannot be read.
void read_zlo(const ReaderContext& ctx);

/// The name of the `.ALL` text of a `.ZLO` input: `in_name` cut to its first 120 Shift-JIS
/// bytes, trimmed, cut before its first "." (a folder's included), plus "_z2a.all".
std::string z2aName(std::string_view in_name);

/// `lblShori` when the text is written.
inline constexpr std::string_view kZ2aDone = "　z2a ﾌｧｲﾙ  作 成 終 了";

/// What `mnuMake_z2a_Click` leaves.
struct Z2aResult
{
    std::string path;     ///< the text written
    bool showZ2a = false; ///< `mnuDisp_z2a` and "z2a表示" enabled, and their flag set
};

/// `mnuMake_z2a_Click`: writes the `.ZLO` input as a zLog `.ALL` text beside it. Throws
/// as `read_zlo` does; Failure 75 when the text cannot be written.
Z2aResult mnuMake_z2a_Click(const ReaderContext& ctx);

/// zLog `.ZLO` logs: the open action `FileOpen_z`, the header read again at the start of a
/// conversion, and `read_zlo`.
class ZloReader : public LogReader
{
public:
    OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) override;
    long countForLabel(const std::filesystem::path& path) const override;
    bool countsLines() const override { return false; }
    void beforeConversion(const ReaderContext& ctx) override;
    void read(const ReaderContext& ctx) override { read_zlo(ctx); }
};

} // namespace vornhale::readers
