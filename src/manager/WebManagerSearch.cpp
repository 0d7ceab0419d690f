#include "manager/WebManagerSearch.h"

#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <system_error>
#include <thread>

namespace vornhale::manager {
namespace {

namespace fs = std::filesystem;

constexpr const char* kQslSearchPath = "/vq4r/qsl2_2.asp?call=";
constexpr const char* kCallDirectoryPath = "/call?callsign=";
constexpr const char* kNfdxaPagePath = "/nfdxa/qsl/index.asp?dx=";
constexpr const char* kNfdxaProbePath = "/nfdxa/qsl/qsl.htm";

bool blank(std::string_view s)
{
    return text::trim(s).empty();
}

// Whether the bytes form valid UTF-8 (no over-long forms, no surrogates, nothing above
// U+10FFFF).
bool validUtf8(std::string_view bytes)
{
    std::size_t i = 0;
    while (i < bytes.size()) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        std::size_t extra = 0;
        char32_t cp = 0, least = 0;
        if (b < 0x80) {
            ++i;
            continue;
        }
        if ((b & 0xE0) == 0xC0) {
            extra = 1, cp = b & 0x1F, least = 0x80;
        } else if ((b & 0xF0) == 0xE0) {
            extra = 2, cp = b & 0x0F, least = 0x800;
        } else if ((b & 0xF8) == 0xF0) {
            extra = 3, cp = b & 0x07, least = 0x10000;
        } else {
            return false;
        }
        if (i + extra >= bytes.size()) {
            return false;
        }
        for (std::size_t k = 1; k <= extra; ++k) {
            const auto c = static_cast<unsigned char>(bytes[i + k]);
            if ((c & 0xC0) != 0x80) {
                return false;
            }
            cp = (cp << 6) | (c & 0x3F);
        }
        if (cp < least || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
            return false;
        }
        i += extra + 1;
    }
    return true;
}

void removeFile(const fs::path& path)
{
    std::error_code ec;
    fs::remove(path, ec);
}

} // namespace

std::optional<std::string> managerByOption10(int option10, std::string_view mng_file,
                                             std::string_view mng_web)
{
    switch (option10) {
    case 0:
        return std::string(mng_web);
    case 1:
        return std::string(blank(mng_file) ? mng_web : mng_file);
    case 2:
        return std::string(blank(mng_web) ? mng_file : mng_web);
    default:
        return std::nullopt;
    }
}

std::string webSearchModeText(int option10)
{
    switch (option10) {
    case 0:
        return "WEB検索のみを使用する";
    case 1:
        return "MNG ﾌｧｲﾙ 優先、WEB補完";
    case 2:
        return "WEB優先、MNG ﾌｧｲﾙ 補完";
    default:
        return {};
    }
}

WebManagerSearch::WebManagerSearch(net::WebConfig config, fs::path strPath, fs::path drive_path,
                                   Sleeper sleeper)
    : m_config(std::move(config)), m_strPath(std::move(strPath)),
      m_drivePath(std::move(drive_path)), m_sleeper(std::move(sleeper))
{
    if (!m_sleeper) {
        m_sleeper = [](std::chrono::milliseconds ms) { std::this_thread::sleep_for(ms); };
    }
}

void WebManagerSearch::pause(std::string_view GetMng_Interval) const
{
    const double seconds = text::val(GetMng_Interval);
    // A negative pause would be a wait without end; it counts as none.
    const double ms = seconds > 0 ? std::round(seconds * 1000.0) : 0.0;
    m_sleeper(std::chrono::milliseconds(static_cast<long long>(ms)));
}

WebSearchResult WebManagerSearch::Get_MNG_web(std::string_view call,
                                              std::string_view mng_file) const
{
    std::string Search_call = text::upper(text::trim(call));
    const std::string home = m_config.endpoint("qsl2_search");
    const std::string url =
        home.empty() ? std::string() : home + kQslSearchPath + net::urlEncode(Search_call);
    return search(url, m_strPath / kQslSearchPage, std::move(Search_call), mng_file, false);
}

WebSearchResult WebManagerSearch::callDirectory(std::string_view call,
                                                std::string_view mng_file) const
{
    const std::string home = m_config.endpoint("call_directory");
    const std::string url =
        home.empty() ? std::string() : home + kCallDirectoryPath + net::urlEncode(text::trim(call));
    return search(url, m_drivePath / kCallDirectoryPage, text::upper(text::trim(call)), mng_file,
                  true);
}

WebSearchResult WebManagerSearch::search(const std::string& url, const fs::path& page,
                                         std::string Search_call, std::string_view mng_file,
                                         bool callDirectoryScan) const
{
    WebSearchResult r;
    r.Search_call = std::move(Search_call);
    r.mng_file = std::string(mng_file);

    // The page of the last search goes first, so that a failed download can never be read
    // as this call's page.
    removeFile(page);
    if (url.empty()) {
        r.fetch.error = "not configured";
    } else {
        r.fetch = net::fetchToFile(url, page, m_config.timeouts());
    }

    if (const auto lines = readPage(page)) {
        const PageScan scan = callDirectoryScan ? scanCallDirectoryPage(*lines)
                                                : scanQslSearchPage(*lines, r.Search_call);
        r.Web_ok = scan.Web_ok;
        r.mng_web = scan.mng_web;
    }
    if (!r.Web_ok) {
        r.mng_web.clear();
    }
    r.found = r.Web_ok && !blank(r.mng_web);
    if (r.found) {
        r.Web_date = webDateText(r.Web_date);
    }
    return r;
}

bool WebManagerSearch::probe() const
{
    const fs::path page = m_drivePath / kProbePage;
    removeFile(page);
    const std::string home = m_config.endpoint("nfdxa_probe");
    if (home.empty()) {
        return false;
    }
    return net::fetchToFile(home + kNfdxaProbePath, page, m_config.timeouts()).ok;
}

std::string WebManagerSearch::probeText(bool reachable)
{
    return reachable ? "Web 検索 可能" : "Web 検索 不可能";
}

std::string WebManagerSearch::nfdxaPageUrl(std::string_view call) const
{
    const std::string home = m_config.endpoint("nfdxa_page");
    return home.empty() ? std::string() : home + kNfdxaPagePath + net::urlEncode(call);
}

PageScan WebManagerSearch::scanQslSearchPage(const std::vector<std::string>& lines,
                                             std::string_view Search_call)
{
    PageScan scan;
    const std::string call = text::upper(Search_call);
    // The piece outlives a line: a result line without a third piece leaves the piece, and
    // so the manager, of the line before, and still counts as a result.
    std::string piece;
    for (const std::string& line : lines) {
        const std::string upperLine = text::upper(line);
        if (!text::contains(upperLine, call) || !text::contains(upperLine, "SEARCH RESULTS:")) {
            continue;
        }
        const std::vector<std::string> pieces = text::split(line, "<BR>");
        if (pieces.size() >= 3) {
            piece = std::string(text::trim(pieces[2]));
        }
        const std::vector<std::string> words = text::split(squeezeBlanks(piece), " ");
        scan.mng_web = std::string(text::trim(words.front()));
        scan.Web_ok = true;
    }
    return scan;
}

PageScan WebManagerSearch::scanCallDirectoryPage(const std::vector<std::string>& lines)
{
    PageScan scan;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!text::contains(lines[i], "QSL Manager:")) {
            continue;
        }
        if (i + 1 >= lines.size()) {
            break; // the page ends before the manager's line
        }
        ++i;
        std::string next = text::replaceAll(lines[i], "<BR>", "");
        next = text::replaceAll(next, "</a", "");
        const std::vector<std::string> pieces = text::split(next, ">");
        if (pieces.size() >= 2) {
            scan.mng_web = std::string(text::trim(pieces[1]));
        }
        scan.Web_ok = true;
    }
    return scan;
}

std::string WebManagerSearch::squeezeBlanks(std::string_view text)
{
    std::string s(text);
    for (int i = 0; i < 3; ++i) {
        s = text::replaceAll(s, "  ", " ");
    }
    return s;
}

std::string WebManagerSearch::webDateText(std::string_view mdy)
{
    const std::vector<std::string> parts = text::split(mdy, "/");
    if (parts.size() < 3) {
        return std::string(mdy);
    }
    const auto twoDigits = [](const std::string& s) { return text::right("0" + s, 2); };
    return parts[2] + "/" + twoDigits(parts[0]) + "/" + twoDigits(parts[1]);
}

std::optional<std::vector<std::string>> WebManagerSearch::readPage(const fs::path& page)
{
    std::ifstream in(page, std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return pageLines(bytes);
}

std::vector<std::string> WebManagerSearch::pageLines(std::string_view bytes)
{
    const bool utf8 = validUtf8(bytes);
    if (utf8 && bytes.substr(0, 3) == "\xEF\xBB\xBF") {
        bytes.remove_prefix(3);
    }
    std::vector<std::string> lines;
    for (const std::string_view line : text::splitLines(bytes)) {
        lines.push_back(utf8 ? std::string(line) : text::decodeSjis(line));
    }
    return lines;
}

void WebManagerSearch::show(const WebSearchResult& result, base::RunObserver& observer)
{
    observer.label("Label33", result.Search_call);
    observer.label("Label28", "Mngテキスト ： " + result.mng_file);
    if (result.found) {
        observer.label("Label34", result.mng_web);
        observer.label("Label31", result.Web_date);
        observer.label("Label32", result.Web_source);
    }
    observer.label("Label45", result.outcome());
    observer.label("Label30", "Set MNG : " + result.Set_mng);
}

} // namespace vornhale::manager
