#pragma once

#include "base/Dialogs.h"
#include "base/RunObserver.h"
#include "base/Trace.h"
#include "net/Http.h"
#include "settings/Options.h"

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vornhale::tools {

/// The six rows of the download window, in their order.
enum class DownloadRow { Th505api, Unzip32, Unlha32, Cty, Ardx, Arrl10 };

/// What never changes about a row.
struct DownloadRowEntry
{
    DownloadRow row;
    std::string_view word;    ///< the command line's name of the row ("cty")
    std::string_view tick;    ///< `Check1`, `Check2`, `Check3`, `Check5`, `Check6`, `Check7`
    std::string_view caption; ///< the tick's caption
    std::string_view label;   ///< the row's status label
    std::string_view homeKey; ///< the download home in `Vornhale_web.ini`
    std::string_view path;    ///< added to the home; the file name follows for two rows
    std::string_view target;  ///< the file in the program folder; empty: found on a page
    std::string_view button;  ///< the row's unpack button, empty for none
    std::string_view buttonCaption;
};

/// The six rows, in the order of the window.
const std::array<DownloadRowEntry, 6>& downloadRows();
/// The row named `word` (case-blind); null when there is none.
const DownloadRowEntry* downloadRowOf(std::string_view word);

/// What a row holds while the window is open.
struct DownloadRowState
{
    bool tick = false;
    bool exists = false; ///< the target was found in the program folder at load
    std::string source;  ///< the address the row downloads
    std::filesystem::path target;
    std::string label;  ///< "完 了", "失 敗" or empty
    std::string detail; ///< why a row failed, in plain words; empty otherwise
};

/// How an unpack button ended.
struct UnpackOutcome
{
    bool ok = false;
    bool applies = true;     ///< false for the steps that only make sense on Windows
    int count = 0;           ///< files unpacked
    std::string title, text; ///< the message shown
    std::string detail;      ///< why it failed, in plain words (for the trace and the command line)
};

/// The download window as core logic (`frmDownLoad`): fetches the data files and libraries
/// from their homes on the web (`Vornhale_web.ini`, section `[web]`), each to a temporary
/// name renamed into place when complete, and unpacks the archives with libarchive. A home
/// that is not configured makes its row fail with a plain reason, and no request is made.
/// The steps that only make sense on Windows (copying `THDLL2VB.DLL` into the system folder,
/// running the self-extracting installers) say so and do nothing.
class DataDownloads
{
public:
    /// The failure codes of the cty unpack, shown in hexadecimal after "Error Code:0x".
    static constexpr int kNotAnArchive = 0x1; ///< missing, unreadable or no LZH/ZIP archive
    static constexpr int kRefused = 0x2;      ///< unsafe entries or too large; nothing written
    static constexpr int kNoCtyDat = 0x3;     ///< the archive holds no `cty.dat`
    static constexpr int kCopyFailed = 0x4;   ///< `cty.dat` could not be put in place

    /// All references must outlive the window. `observer` hears every label as it changes.
    DataDownloads(std::filesystem::path strPath, const settings::Options& options,
                  net::WebConfig web, base::Trace& trace, base::Dialogs& dialogs,
                  base::RunObserver* observer = nullptr);

    /// `Form_Load`: with `inet_flag` "OK", the addresses, whether each target exists, the
    /// names found by `get_unlha_name` and `get_cty_dat_name`; called from the start's check
    /// (`fromStartCheck`), the ticks of the rows whose files are missing are set (`Check1`,
    /// `Check3`, `Check5`, `Check6`, `Check7`). Without "OK" nothing is looked up and every
    /// row stays unlabelled.
    void Form_Load(bool fromStartCheck);

    /// Finds the name of the current `cty-….zip` on the page "/cty/" of the country-file
    /// home; empty when `inet_flag` is not "OK", the page cannot be fetched or holds no link.
    /// The scratch files `cty_dat.html` and `cty_dat.txt` are deleted afterwards.
    std::string get_cty_dat_name();
    /// Finds the name of the UNLHA32 installer on the page "/archiver/lib/unlha32.html" of
    /// the archiver home; empty as above. Scratch files `unlha32.html`, `unlha32.txt`.
    std::string get_unlha_name();

    /// The link of the first line of a country-file page that holds both ".zip>" and
    /// "<a href=download/cty-" (double quotes removed), without "download/": the zip's name.
    /// Empty when no line holds both marks, or the name is no plain file name.
    static std::string ctyNameFromPage(std::string_view pageBytes);
    /// The first word with ".EXE" on the lines of an archiver page that hold the mark
    /// "・・・ダウンロード" (blanks, wide blanks and tabs separate words). The page may be
    /// Shift-JIS or UTF-8. Empty when there is none, or it is no plain file name.
    static std::string unlhaNameFromPage(std::string_view pageBytes);

    /// From now on `observer` hears every label as it changes (null: none).
    void setObserver(base::RunObserver* observer) { m_observer = observer; }

    void setTick(DownloadRow row, bool on) { state(row).tick = on; }
    const DownloadRowState& row(DownloadRow row) const;
    /// A label of the window (`Label2`, `Label3`, `Label5`, `Label6`, or a row's label).
    std::string label(std::string_view name) const;

    /// `cmdStart`: downloads each ticked row in order; a failed row does not stop the later
    /// ones. Each row's label says "完 了" or "失 敗"; on any failure the error message
    /// (`err_disp`) is shown. All ticks are cleared. Returns whether every ticked row came.
    bool cmdStart();

    /// `Command1` (`UnLZH_dll`): unpacks `TH503API.LZH` into the folder `TH503API`. Copying
    /// `THDLL2VB.DLL` into the system folder does not apply on this platform.
    UnpackOutcome Command1();
    /// `Command2`, `Command3`: the self-extracting installers run on Windows only.
    UnpackOutcome Command2();
    UnpackOutcome Command3();
    /// `Command4`: unpacks the cty zip into the folder named after it without ".zip" and
    /// replaces the program folder's `cty.dat` with the one in it.
    UnpackOutcome Command4();
    /// The unpack button of `row`; rows without one return an outcome that does not apply.
    UnpackOutcome unpack(DownloadRow row);

private:
    DownloadRowState& state(DownloadRow row);
    void setLabel(std::string_view name, std::string text);
    void formRow(DownloadRow row);
    std::string fetchPage(std::string_view homeKey, std::string_view path,
                          std::string_view htmlName, std::string_view txtName,
                          std::string (*parse)(std::string_view));
    std::filesystem::path inFolder(std::string_view name) const;
    bool online() const;

    std::filesystem::path m_strPath;
    const settings::Options& m_options;
    net::WebConfig m_web;
    base::Trace& m_trace;
    base::Dialogs& m_dialogs;
    base::RunObserver* m_observer;
    std::string m_unlhaName;
    std::string m_ctyName;
    std::array<DownloadRowState, 6> m_rows;
    std::map<std::string, std::string, std::less<>> m_labels;
};

} // namespace vornhale::tools
