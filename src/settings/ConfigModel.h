#pragma once

#include "base/RunObserver.h"

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>

namespace vornhale::base {
class Trace;
} // namespace vornhale::base

namespace vornhale::settings {

class SettingsFiles;

/// The environment settings dialog `frmConfig` without its window: ten rows of paths, each
/// with a validity flag and a label colour, the three "無用" ticks, the marks, the internet
/// tick, the messages, and what the buttons do. It refuses a save while a row is invalid.
///
/// The rows hold their own texts while the dialog is open; nothing reaches the settings or
/// the file before `cmdSave`.
class ConfigModel
{
public:
    /// How a row's text is tested.
    enum class RowKind {
        Folder,       ///< invalid when blank
        FolderOrNone, ///< invalid when blank and its "無用" tick is off
        MngFile,      ///< invalid when the file is missing or the text blank
        HamlogFile,   ///< invalid when the file is missing or the text has no folder
        LogFolder,    ///< invalid when the folder is missing or the text has no folder, unless
                      ///< its "無用" tick is on
    };

    /// One row of the dialog, in the order of the table the dialog tests.
    struct Row
    {
        std::string_view textBox; ///< "txtZlog_dat"
        std::string_view button;  ///< "cmdZlog_dat"
        std::string_view label;   ///< object name of the row's caption label
        std::string_view caption;
        std::string_view key; ///< the settings key
        RowKind kind;
        bool folder;                  ///< a browse keeps the folder of the chosen file
        std::string_view filter;      ///< the browse filter, "description|pattern"
        std::string_view notUsedTick; ///< "chkNo_name", or empty
    };

    static constexpr std::string_view kNotUsed = "使用しない";
    static constexpr std::string_view kNotUsedCaption = "無用";
    static constexpr std::string_view kNotUsedToolTip =
        "使用する予定が無い時は [ レ点マーク ] を付けて下さい。";

    /// The ten rows.
    static std::span<const Row> rows();
    /// The row of a text box, button or tick; null when none.
    static const Row* rowOf(std::string_view name);

    /// `files` holds the settings and writes `Vornhale_cfg.ini`; `trace` may be null.
    /// `upgradeFromOld` is the start's note that the settings came from an old version: the
    /// save then drops the old environment file first.
    ConfigModel(SettingsFiles& files, base::Trace* trace, bool upgradeFromOld);

    /// `Form_Load_frmConfig`: the marks and defaults, the caption, the rows from the keys
    /// (or, without an environment file, from the defaults, all labels red and the save
    /// refused), then the overall check.
    void Form_Load_frmConfig();

    // ---- What a view reads ---------------------------------------------------------------
    const std::string& caption() const { return m_caption; }
    /// Text of a row's box or of `Text1` / `Text2`.
    const std::string& text(std::string_view name) const;
    /// `chkNo_name`, `chkNo_qth`, `chkNo_rtcl`, `Chk_inet`, `Check1`.
    bool tick(std::string_view name) const;
    /// Whether a control takes input (`cmdSave`, `cmdOK`, the browse buttons).
    bool enabled(std::string_view name) const;
    /// A text box shown grey: its row is declared not used.
    bool greyed(std::string_view textBox) const;
    /// Whether a row is invalid (its flag is 1).
    bool invalid(std::size_t row) const { return m_invalid.at(row); }
    /// The colour of a row's label: red while invalid, black when valid.
    base::Colour labelColour(std::size_t row) const { return m_labelColour.at(row); }
    const std::string& lblMsg() const { return m_lblMsg; }
    base::Colour lblMsgColour() const { return m_lblMsgColour; }
    const std::string& lblMsg1() const { return m_lblMsg1; }
    const std::string& lblMsg2() const { return m_lblMsg2; }
    /// The lookup switches the "無用" ticks set: name, QTH, RTCL.
    bool nameLookup() const { return m_nameLookup; }
    bool qthLookup() const { return m_qthLookup; }
    bool rtclLookup() const { return m_rtclLookup; }
    bool upgradePending() const { return m_upgrade; }

    /// Called after any change of what the view shows.
    void setListener(std::function<void()> listener) { m_listener = std::move(listener); }

    // ---- User actions ---------------------------------------------------------------------
    /// An edit of a row's box, `Text1` or `Text2`; a row is checked again.
    void editText(std::string_view name, std::string_view text);
    /// A click on one of the ticks.
    void clickTick(std::string_view name);
    /// A file chosen through a row's browse button: a folder row keeps the path up to and
    /// including its last separator, a file row the whole path. An empty path (the dialog was
    /// cancelled) changes nothing.
    void browseChosen(std::string_view button, std::string_view path);
    /// `cmdSave`: the values from the controls into the settings, `ini_write_cfg`, the file
    /// traced, the messages of a done save.
    void cmdSave();
    /// `cmdOK`: the parting message. The caller closes the dialog and the start goes on.
    void cmdOK();

    /// Runs the row check of `row` and then the overall check (`sp_flag_Chk`).
    void checkRow(std::size_t row);
    /// `sp_flag_Chk`: sums the flags of the ten rows and sets the buttons and messages.
    void sp_flag_Chk();

private:
    void changed();
    bool rowValid(std::size_t row) const;
    void setNotUsed(std::string_view tick, bool on);
    void traceFile();
    void set_read_cfg2();

    SettingsFiles& m_files;
    base::Trace* m_trace;
    bool m_upgrade;
    std::function<void()> m_listener;

    std::map<std::string, std::string, std::less<>> m_texts;
    std::map<std::string, bool, std::less<>> m_ticks;
    std::map<std::string, std::string, std::less<>> m_remembered;
    std::map<std::string, bool, std::less<>> m_enabled;
    std::array<bool, 10> m_invalid{};
    std::array<base::Colour, 10> m_labelColour{};
    std::string m_caption;
    std::string m_lblMsg, m_lblMsg1, m_lblMsg2;
    base::Colour m_lblMsgColour = base::Colour::Black;
    bool m_nameLookup = true;
    bool m_qthLookup = true;
    bool m_rtclLookup = true;
    bool m_loading = false;
};

} // namespace vornhale::settings
