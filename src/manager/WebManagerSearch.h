#pragma once

#include "base/RunObserver.h"
#include "net/Http.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::manager {

/// The page file of the QSL-manager search, in the program folder.
inline constexpr const char* kQslSearchPage = "DX_call.htm";
/// The page file of the call-directory search, in the working folder.
inline constexpr const char* kCallDirectoryPage = "Dalmuir.htm";
/// The file of the reachability probe, in the working folder.
inline constexpr const char* kProbePage = "nfdxa_probe.htm";
/// The call sign of the start page of the embedded browser.
inline constexpr const char* kSampleCall = "XX9TST";

/// The outcome texts of a search (`Label45`).
inline constexpr const char* kFound = "取 得 成 功";
inline constexpr const char* kNoManager = "M N G 無 し";

/// What one search found and what its displays show.
struct WebSearchResult
{
    std::string Search_call; ///< the call searched, trimmed and in upper case (`Label33`)
    std::string mng_web;     ///< the manager the page gave; empty when none
    std::string Web_date;    ///< the date text (`Label31`)
    std::string Web_source;  ///< the source text (`Label32`)
    bool Web_ok = false;     ///< a result line was seen
    std::string mng_file;    ///< the manager file's answer shown beside (`Label28`)
    std::string Set_mng;     ///< the manager finally set (`Label30`)
    bool found = false;      ///< `Web_ok` and a manager that is not blank
    net::FetchResult fetch;  ///< how the download ended

    /// `Label45`: "取 得 成 功" in blue or "M N G 無 し" in red.
    std::string outcome() const { return found ? kFound : kNoManager; }
    base::Colour outcomeColour() const { return found ? base::Colour::Blue : base::Colour::Red; }
};

/// What the page scans take from a page: the manager, and whether a result was seen.
struct PageScan
{
    bool Web_ok = false;
    std::string mng_web;
};

/// The values that the conversion's search and the batch walk share for the life of the
/// program: the manager file's answer for the last contact of a conversion, and the last
/// manager a web search found.
struct SharedManagerValues
{
    std::string mng_file;
    std::string mng_web;
};

/// The manager chosen by `Option10` from the file's and the web's answer: member 0 the web's;
/// member 1 the file's, or the web's when the file's is blank; member 2 the web's, or the
/// file's when the web's is blank. Nothing for any other member.
std::optional<std::string> managerByOption10(int option10, std::string_view mng_file,
                                             std::string_view mng_web);

/// The status text of `Label29` for an `Option10` member; empty for none.
std::string webSearchModeText(int option10);

/// The web QSL-manager search: a plain download of a result page to a local file and a scan
/// of its lines. Endpoints come from `Vornhale_web.ini`; an endpoint that is not configured
/// makes no request, and the search ends as a failed download does. A failed download is a
/// search without a manager, never a failure of the run.
class WebManagerSearch
{
public:
    /// How the pause between requests is spent (a test may count instead of sleeping).
    using Sleeper = std::function<void(std::chrono::milliseconds)>;

    /// `strPath` holds the page of the QSL-manager search, `drive_path` the other pages.
    WebManagerSearch(net::WebConfig config, std::filesystem::path strPath,
                     std::filesystem::path drive_path, Sleeper sleeper = {});

    /// The pause before a request of the conversion: `GetMng_Interval` read as a number of
    /// seconds (as Val reads it; below 0 counts as 0), slept in milliseconds.
    void pause(std::string_view GetMng_Interval) const;

    /// `Get_MNG_web`: downloads `qsl2_search` + "/vq4r/qsl2_2.asp?call=" + the call in upper
    /// case to `DX_call.htm` in the program folder and scans it with `scanQslSearchPage`.
    /// `mng_file` is only carried for the display; the caller settles `Set_mng`.
    WebSearchResult Get_MNG_web(std::string_view call, std::string_view mng_file = {}) const;

    /// The call-directory routine: downloads `call_directory` + "/call?callsign=" + the call to
    /// `Dalmuir.htm` in the working folder and scans it with `scanCallDirectoryPage`.
    WebSearchResult callDirectory(std::string_view call, std::string_view mng_file = {}) const;

    /// The reachability probe: downloads `nfdxa_probe` + "/nfdxa/qsl/qsl.htm"; true when the
    /// download succeeded.
    bool probe() const;
    /// `Label30` after the probe: "Web 検索 可能" (blue) or "Web 検索 不可能" (red).
    static std::string probeText(bool reachable);

    /// The address of the browser page for `call` (`nfdxa_page`), empty when not configured.
    std::string nfdxaPageUrl(std::string_view call = kSampleCall) const;

    /// The scan of a QSL-manager search page: a result line holds the call and
    /// "Search Results:", both ignoring case; its third "<BR>" piece, trimmed, with two blanks
    /// made one three times, gives its first word as the manager. A later result line
    /// overwrites an earlier one.
    static PageScan scanQslSearchPage(const std::vector<std::string>& lines,
                                      std::string_view Search_call);
    /// The scan of a call-directory page: the line after one that holds "QSL Manager:",
    /// without "<BR>" and "</a", split at ">", gives its second piece, trimmed.
    static PageScan scanCallDirectoryPage(const std::vector<std::string>& lines);

    /// Two blanks made one, three times over: a run of more than eight blanks keeps a run.
    static std::string squeezeBlanks(std::string_view text);
    /// A date text month/day/year as year/MM/DD, month and day on two digits; a text of
    /// another form is left as it is.
    static std::string webDateText(std::string_view mdy);

    /// The lines of a page file: Shift-JIS, or UTF-8 when the bytes are valid UTF-8. Nothing
    /// when the file cannot be read.
    static std::optional<std::vector<std::string>> readPage(const std::filesystem::path& page);
    /// The lines of a page's bytes, decoded as `readPage` decodes them.
    static std::vector<std::string> pageLines(std::string_view bytes);

    /// Shows a result: `Label33` the call, `Label28` "Mngテキスト ： " and the file's answer,
    /// on success `Label34`, `Label31`, `Label32`, then `Label45` and `Label30`
    /// "Set MNG : " with `Set_mng`.
    static void show(const WebSearchResult& result, base::RunObserver& observer);

    const net::WebConfig& config() const { return m_config; }

private:
    WebSearchResult search(const std::string& url, const std::filesystem::path& page,
                           std::string Search_call, std::string_view mng_file,
                           bool callDirectoryScan) const;

    net::WebConfig m_config;
    std::filesystem::path m_strPath;
    std::filesystem::path m_drivePath;
    Sleeper m_sleeper;
};

} // namespace vornhale::manager
