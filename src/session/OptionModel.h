#pragma once

#include "base/Dialogs.h"
#include "base/RunObserver.h"
#include "settings/LayoutHooks.h"
#include "session/OptionCatalog.h"
#include "settings/Options.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::settings {
class SettingsFiles;
}

namespace vornhale::session {

using settings::LayoutHooks;
using settings::Options;
using settings::SettingsFiles;


/// What the option rules need to know of the world around the window and cannot know by
/// themselves. The owner fills it before the load and may change it later (a new input).
struct OptionFacts
{
    /// The input path; a text without a path separator means that no usable input is open.
    std::string in_name;
    /// Kind of the input: "zlo", "txt", "all", "log", ... (empty before the first open).
    std::string f_type;
    /// The contest name the input gave (a `.ZLO` header); the file-name tags may replace it.
    std::string cont_name;
    /// Full path of the chosen province master; empty when none is chosen.
    std::string mas_dat_name;
    /// The contest selection disagrees with the master (the start stays disabled).
    bool contestMismatch = false;

    /// The history file (`hamlog_hdb_dir`): its name as shown on `Option01(0)`, its path for
    /// the missing-file message, and whether it exists.
    std::string historyFileName;
    std::string historyFilePath;
    bool historyFileExists = false;
    /// The text the history check left in `lblH_r`.
    std::string lblH_r;

    /// Contest name -> province master path, from `cont_name_zlo.cfg`; empty result: none.
    std::function<std::string(std::string_view)> read_cont_name_zlo;
    /// Whether a name is a known entity (the entity list's name check).
    std::function<bool(std::string_view)> knownEntity;
    /// Tests the history date again (history file missing).
    std::function<void()> disp_err_op04;
    /// Sets up the web search part of the window (only with `inet_flag` "OK").
    std::function<void()> Form_Load_GetMng;

    /// Today as "yyyymmdd"; empty means the system clock.
    std::string today;
    /// The program folder (`strPath`) and the working folder (`drive_path`).
    std::filesystem::path strPath;
    std::filesystem::path drive_path;
    /// Where a message box goes; may be null.
    base::Dialogs* dialogs = nullptr;
};


/// What a view shows of one control: option, label, button, menu entry, frame.
struct ControlState
{
    std::string caption;
    std::string toolTip;
    std::string text; ///< text boxes
    bool on = false;  ///< ticks, menu ticks, group members
    bool enabled = true;
    bool visible = true;
    base::Colour colour = base::Colour::Black;
};

/// The main window's options as a model: every control's value, enabled state and caption
/// colour, the labels the rules set, the change rules, and the load order. A window is a view
/// of it: it forwards the user's actions to the methods below and follows the notifications.
///
/// Controls are named as the window names them: "Check06", "Option04(2)", "txtYYYY",
/// "lblShori", "cmdStart", "mnuGet_MNG"; the tool button "変換" under its key. What the
/// window shows and what the settings hold may differ for a while: a rule procedure of the
/// load sets a control without storing it, and the stored value wins at the next `_Chk_`.
class OptionModel
{
public:
    /// `options` is the memory of the settings; `files` writes and reads them (may be null
    /// when nothing is to be written); `layout` may be null.
    OptionModel(Options& options, SettingsFiles* files, OptionFacts facts = {},
                LayoutHooks* layout = nullptr);
    ~OptionModel();
    OptionModel(const OptionModel&) = delete;
    OptionModel& operator=(const OptionModel&) = delete;

    OptionFacts& facts() { return m_facts; }
    const Options& options() const { return m_options; }

    // ---- What a view reads --------------------------------------------------------------

    /// The state of a control; an unknown name gives a default state (enabled, black, empty).
    const ControlState& control(std::string_view name) const;
    bool tick(std::string_view name) const { return control(name).on; }
    /// The member of a group that the window shows on; -1 when none is on.
    int member(std::string_view group) const;
    const std::string& text(std::string_view name) const { return control(name).text; }
    bool enabled(std::string_view name) const { return control(name).enabled; }
    base::Colour colour(std::string_view name) const { return control(name).colour; }
    const std::string& caption(std::string_view name) const { return control(name).caption; }

    /// The first layout cell that holds "州名": row 1 or 2 and index 0 to 11; row 0 if none.
    struct CellPlace
    {
        int row = 0;
        int index = -1;
    };
    CellPlace stateCell() const { return m_stateCell; }

    /// The window title.
    const std::string& windowTitle() const { return m_title; }
    /// Tab shown at start: first group (`Option5`), second group (`disp_top_SSTab`).
    int startTabFirst() const { return m_startTabFirst; }
    int startTabSecond() const { return m_startTabSecond; }
    /// Whether `Form_Load` ran once already in this run of the program.
    bool loadedOnce() const { return m_loadedOnce; }
    /// The run flag of the conversion report, set by `Check21`.
    bool reportFlag() const { return m_reportFlag; }

    /// Names of the settings-file calls made, in order ("ini_write_new", ...).
    const std::vector<std::string>& fileCalls() const { return m_fileCalls; }
    void clearFileCalls() { m_fileCalls.clear(); }

    // ---- Notifications ------------------------------------------------------------------

    /// Called with the name of a control, or of a settings key, whose state changed.
    using Listener = std::function<void(std::string_view name)>;
    int subscribe(Listener listener);
    void unsubscribe(int id);

    // ---- User actions -------------------------------------------------------------------

    /// A click on a tick or menu tick: inverts it and runs its rule.
    void clickTick(std::string_view name);
    /// Sets a tick to `on` as a click would; nothing happens when it already is.
    void setTick(std::string_view name, bool on);
    /// The user picks member `index` of a group.
    void chooseMember(std::string_view group, int index);
    /// The user edits a text box or picks a `Combo1` entry.
    void editText(std::string_view name, std::string_view text);
    /// A click on a button or menu entry the rules name: "cmdNG", "cmdNow", "cmdDisp",
    /// "cmdDel", "cmdZone_moji_save", "cmdDelProv", "makeIni", "ini 作成", "mnuMake_a2t",
    /// "mnuMake_t2a". Returns false for a name it does not know.
    bool clickButton(std::string_view name);

    // The procedures behind the actions, under their own names.
    void cmdNG_();
    void cmdNow_Click();
    /// The count of the name master: its line number of the end less the two heading lines,
    /// as "<n>　件" on the status line; a file that cannot be read is said so in red.
    void cmdCount_Click();

    /// The file dialog of `cmdSetMas_mas` or `cmdSetMas_dat`: the folder of the `.mas` files
    /// (`Prov\` below the program folder) or of the `.dat` files (`Prov_mas_dat_dir`); one
    /// dialog for both kinds when the two folders are the same.
    struct MasterDialog
    {
        std::string title, folder, filter;
    };
    MasterDialog provinceMasterDialog(std::string_view button) const;
    /// A province master picked by hand (empty: the dialog was cancelled, "マスターは未選択です。").
    void provinceMasterChosen(const std::string& path);
    void cmdDisp_Click();
    void cmdDel_Click();
    void cmdZone_moji_save_Click();
    void cmdDelProv_Click();
    void makeIni_Click();
    void mnuMake_a2t_Click();
    void mnuMake_t2a_Click();

    // ---- Load order ---------------------------------------------------------------------

    /// The window's load: `Form_Load` with `Form_Load_2` and `Form_Load_3`. The first load of
    /// a run reads `Vornhale_new.ini` and `Vornhale_cfg.ini`, a later one `Vornhale.ini`.
    void Form_Load();
    void Form_Load_2();
    void Form_Load_3();

    // ---- Rule procedures (also run by other parts: a new input runs `Check5_Click`) -----

    void Check5_Click();
    void Check5_Chk();
    void chk_go();
    void inetFlagRule();
    void Op2_Chk_();
    void Op2_Chk();
    void Op02_Chk();
    void Op04_Chk();
    void Op08_Chk();
    void Op3_Chk();
    void Op4_Chk();
    void Op4_Chk_();
    void Op05_Chk_();
    void Op05_Chk();
    void Op6_Chk();
    void Op7_Chk();
    void Op10_Chk();
    void Check18_Click();
    void Check9_Click();
    void Check21_Click();
    void Check22_Click();
    void Check23_Click();

    /// The texts of the period and of the title from `Start_date` and `End_date`.
    void buildPeriodAndTitle();

    /// What the start needs that the rules check, judged on the values of one run (`run`):
    /// with `Check5`, a province master (`master` chosen by hand, else the one the contest of
    /// the input suggests, as the open guesses it), and no "州名" cell beside a province.
    struct StartCheck
    {
        bool go = true;
        std::string status; ///< why not, as `lblShori` shows it
        std::string master; ///< the province master of the run; empty without `Check5`
    };
    StartCheck startCheck(const Options& run, std::string master) const;

private:
    // Control state, with notification on every real change.
    ControlState& mut(std::string_view name);
    void setOn(std::string_view name, bool on);
    void setEnabled(std::string_view name, bool enabled);
    void setColour(std::string_view name, base::Colour colour);
    void setCaption(std::string_view name, std::string_view caption);
    void setToolTip(std::string_view name, std::string_view toolTip);
    void setText(std::string_view name, std::string_view text);
    void setLabel(std::string_view name, std::string_view caption, base::Colour colour);
    void setStatus(std::string_view text, base::Colour colour = base::Colour::Black);
    void notify(std::string_view name);

    // Stored values.
    void store(std::string_view key, std::string value);
    /// A stored value changed elsewhere (an open, a run, the layout model): the controls
    /// that show it follow, and the listeners are told of the key.
    void storeChanged(std::string_view key, const std::string& value);
    std::string storageName(std::string_view controlName) const;
    const std::string& stored(std::string_view controlName) const;

    // Ticks and groups: set the control, store its key, colour it, run its rule.
    void changeTick(std::string_view name, bool on);
    void changeMember(std::string_view group, int index);
    /// Shows member `index` on and the others off, without storing.
    void showMember(std::string_view group, int index);
    /// Blue for the member that is on, black for the others.
    void colourGroup(std::string_view group);
    void enableGroup(std::string_view group, bool enabled);
    void tickRule(std::string_view name);
    void groupRule(std::string_view group);
    void textRule(std::string_view name);
    void setTickFromKey(std::string_view name);
    void setGroupFromKey(std::string_view group);

    void startTabTick(std::string_view name);
    void Check14_Click();
    void Check09_Click();
    /// `Check3_Click` and `Check4_Click`: the two No-QSL rewrite ticks exclude each other.
    void noQslRewriteTick(std::string_view name);
    void Check6_Click();
    /// `Label29` tells the order of the manager sources that `Option10` chose.
    void showManagerOrder();
    void searchStateCell();
    void provinceTagChain();
    void nameMasCount();
    void fillDates();

    void callFiles(const char* what, void (SettingsFiles::*call)());
    void ini_write_new();
    void ini_write_old();
    void ini_write_cfg();
    void ini_read_new();
    void ini_read_cfg();
    void ini_read_old();
    void ini_write_zone_moji();

    bool hasInput() const;
    std::string todayText() const;

    Options& m_options;
    SettingsFiles* m_files;
    OptionFacts m_facts;
    LayoutHooks* m_layout;

    std::map<std::string, ControlState, std::less<>> m_controls;
    std::map<int, Listener> m_listeners;
    int m_nextListener = 1;
    std::vector<std::string> m_fileCalls;

    CellPlace m_stateCell;
    std::string m_title;
    int m_startTabFirst = 0;
    int m_startTabSecond = 0;
    bool m_loadedOnce = false;
    bool m_reportFlag = false;
    bool m_loading = false;
    bool m_storing = false;
    int m_storeSubscription = 0;
};

} // namespace vornhale::session
