#pragma once

#include "base/RunObserver.h"
#include "settings/SettingsFiles.h"

#include <array>
#include <string>
#include <string_view>

namespace vornhale::settings {

/// The mode table dialog `frmMode`: ten rows N (1 to 10) of a source text `mode_N_0_txt`, a
/// target text `mode_N_1_txt` and a tick `mode_N_chk`.
///
/// The dialog reads and writes through the inner option routines, so it acts on whichever
/// option file and sections an earlier step selected. The table is written to the option
/// section but read from the environment section, so a row typed here lasts only until the
/// program ends.
class ModeTableModel
{
public:
    static constexpr int kRows = 10;

    static constexpr std::string_view kLabel11 = "この変換テーブルは最優先で変換する。";
    static constexpr std::string_view kLabelM = "--->";
    static constexpr std::string_view kCheckCaption = "変換する";
    static constexpr std::string_view kCommand2 = "保　存";
    static constexpr std::string_view kCommand1 = "戻　る";

    /// What a row's controls show.
    struct Row
    {
        std::string source; // TextN(0)
        std::string target; // TextN(1)
        bool on = false;    // CheckN
        base::Colour colour = base::Colour::Black;
    };

    /// `files` (and its options) must outlive the model.
    explicit ModeTableModel(SettingsFiles& files);

    /// Reads all option keys from the current file and sections, then shows each row: a tick
    /// of "1" is on and blue, anything else off and black.
    void Form_Load();

    /// Row `n` (1 to 10); rows outside are an empty row.
    const Row& row(int n) const;

    /// A typed text goes into its value at once.
    void setSource(int n, std::string_view text);
    void setTarget(int n, std::string_view text);
    /// A tick stores "1" or "0" at once and takes its colour.
    void setTick(int n, bool on);

    /// "保　存": copies every row into the values, writes all option keys to the current file
    /// and sections, and closes.
    void Command2_Click();
    /// "戻　る": closes without writing.
    void Command1_Click();

    bool isOpen() const { return m_open; }

    /// The option names of row `n`.
    static std::string sourceKey(int n);
    static std::string targetKey(int n);
    static std::string tickKey(int n);

private:
    Row* rowAt(int n);
    void showTick(Row& r, bool on);

    SettingsFiles& m_files;
    std::array<Row, kRows> m_rows;
    bool m_open = true;
};

} // namespace vornhale::settings
