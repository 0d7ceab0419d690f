#pragma once

#include "base/RunObserver.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vornhale::settings {
class Options;
}

namespace vornhale::readers {

class ZloFile;

/// The two remark layouts as the analysis sees them: the captions in the cells of each row,
/// and the layout keys as text (an item "stands in" a key anywhere in its text).
struct RemarkCells
{
    static constexpr std::size_t kCells = 12;
    std::array<std::array<std::string, kCells>, 2> cells;
    std::string Rmks1_cfg, Rmks2_cfg;

    /// The layouts as the keys `Rmks1_cfg` and `Rmks2_cfg` draw them: each cell the trimmed
    /// entry of its key, entries past the twelfth ignored.
    static RemarkCells fromOptions(const settings::Options& options);

    /// Whether `item` stands anywhere in the text of either key.
    bool inKeys(std::string_view item) const;
};

/// A caption of the window with its colour; an empty text clears the label.
struct ColouredText
{
    std::string text;
    base::Colour colour = base::Colour::Black;
};

/// What the received exchange of the opened log holds, found when a log is opened and again
/// when the remark layout changes, and what the front ends show of it. The results persist
/// from one pass to the next as the window's labels do: a pass changes only what its rules
/// name.
class ExchangeAnalysis
{
public:
    /// The warning above the list of layout items the log cannot fill.
    static constexpr std::string_view kMissingWarning = " ｺﾝﾃｽﾄ・ﾅﾝﾊﾞｰ に下記は含まれません。";
    /// `lblCon_No` of an age contest.
    static constexpr std::string_view kAgeExchange = "RST + 年齢";
    static constexpr std::size_t kCounters = 21;

    // --- Results, kept for the conversion ------------------------------------------------
    bool rcvd_has_iota = false;
    bool rcvd_has_zone = false;
    bool rcvd_has_state = false;

    // --- What the window shows -----------------------------------------------------------
    std::string lblCon_No;         ///< the exchange's name
    ColouredText lblMsg1, lblMsg2; ///< the warning and the list of missing items
    /// `lblDX1` and `lblDX2` shown light red: the layout lacks "$DX" or "Calls" for the
    /// calls of this log. The front end clears the labels' texts.
    bool dxLabelsRed = false;
    /// Cells shown light cyan (`change_color_9`); the others show the button face.
    std::array<std::array<bool, RemarkCells::kCells>, 2> cellHighlighted{};

    // --- Working data --------------------------------------------------------------------
    std::string missing_items;
    std::string highlight_item;
    /// Wide enough for a log of any length: a long log is analysed, never overflows.
    std::array<std::int64_t, kCounters> counters{};
    long qso_lines = 0;
    long portable_count = 0;
    long long_call_count = 0;
    long dx_item_count = 0;
    long calls_item_count = 0;

    /// The decision by the contest name of a `.ZLO` log.
    void Check_Use_Item(std::string_view cont_name, const RemarkCells& layout);

    /// The call-sign statistics of a `.ZLO` log's QSO records. The flags stay as
    /// `Check_Use_Item` set them.
    void check_rcvd_zlo(const ZloFile& file, const RemarkCells& layout);

    /// The statistical passes over a `.ALL` or `.TXT` log at `path` (its first line
    /// dropped). `in_name` is the input path as the run holds it; `zonesKept` (`Check6`) the
    /// tick that keeps zones. Throw Failure 53 when the file cannot be read, Failure 62 when it
    /// holds nothing after its first line.
    void check_rcvd_all(const std::filesystem::path& path, std::string_view in_name, bool zonesKept,
                        const RemarkCells& layout);
    void check_rcvd_txt(const std::filesystem::path& path, std::string_view in_name, bool zonesKept,
                        const RemarkCells& layout);

    /// The statistical passes over an RTCL text log at `path`, before version 3.00 (12
    /// fields a record) and from 3.00 (13 fields): every record counts, none is dropped. The
    /// exchange is the received field with every "599-" and then every "-" removed, cut to
    /// 8 characters. Of the decisions only four apply, and the zone needs exactly one numeric
    /// exchange and exactly one of three characters. Throw Failure 53 when the file cannot be
    /// read, Failure 62 when its last record lacks fields.
    void check_rcvd_log_old(const std::filesystem::path& path, const RemarkCells& layout);
    void check_rcvd_log_new(const std::filesystem::path& path, const RemarkCells& layout);

    /// `change_color_9`: every cell whose caption equals `highlight_item` turns light cyan.
    void change_color_9(const RemarkCells& layout);
    /// `change_color_0`: every cell back to the button face.
    void change_color_0() { cellHighlighted = {}; }

    /// Whether the conversion's start should ask about the items the layout lacks.
    bool hasMissingItems() const;

private:
    enum class Form { All, Txt };
    void linePass(const std::filesystem::path& path, std::string_view in_name, bool zonesKept,
                  const RemarkCells& layout, Form form);
    void startPass();
    void countExchange(std::string_view exchange);
    void logPass(const std::filesystem::path& path, const RemarkCells& layout,
                 std::size_t fieldsPerRecord, std::size_t rcvdField, std::size_t callField);
    void countCallParts(std::string_view call, bool zlo, std::size_t lengthByte);
    void tail(const RemarkCells& layout, bool zlo);
    void showMissing();
    void bump(std::size_t index);
};

/// The contest that a file name tells (`Check5_Click`, only when `Check5` is ticked and the
/// input is a path): the first of a chain of keys that the upper-case file name contains.
struct ContestFromName
{
    std::string cont_name;
    /// `lblMas_dat_zlo` for the "IOTA" key: provinces cannot be had ("…不可能です｡", red).
    std::optional<ColouredText> lblMas_dat_zlo;
};

/// The chain's answer for the file name of `path`; none when no key matches, and then the
/// contest name stays as it was.
std::optional<ContestFromName> contestFromFileName(std::string_view path);

/// `lblMas_dat_zlo` when the province master for the guessed contest was found.
inline constexpr std::string_view kMasterGuessed =
    "入力ﾌｧｲﾙ名より推測して指定しました。不適切なら再選択のこと";

/// BASIC's IsNumeric for the exchanges: after blanks, an optional sign, digits with at most
/// one point, and an optional exponent; at least one digit.
bool isNumericText(std::string_view s);

} // namespace vornhale::readers
