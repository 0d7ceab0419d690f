#include "tools/DataDownloads.h"

#include "base/FileMask.h"
#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"
#include "tools/Archive.h"

#include <cstdio>
#include <fstream>
#include <vector>

namespace vornhale::tools {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDone = "完 了";
constexpr std::string_view kFailed = "失 敗";
constexpr std::string_view kDownloading = "ﾀﾞｳﾝﾛｰﾄﾞ中...";
constexpr std::string_view kNeedsUnpacking = "解凍後コピー必要の時あり";
constexpr std::string_view kTitle = "Vornhale";

// The state lists are saved under the names the program reads them by, as zLog names them;
// the operator's system, which compares names without regard to case, knew no difference.
const std::array<DownloadRowEntry, 6> kRows{{
    {DownloadRow::Th505api, "th505api", "Check1", "THDLL2VB ．DLL　のダウンロード", "Label1",
     "hamlog_home", "/prog/Th505api.lzh", "TH505API.LZH", "Command1",
     "TH505API ．LZH の解凍・DLL のコピー"},
    {DownloadRow::Unzip32, "unzip32", "Check2", "UNZIP32 ．DLL　のダウンロード", "Label4",
     "archiver_home", "/archiver/lib/unzp542.exe", "unzp542.exe", "Command2",
     "UNZIP32．DLL の解凍・コピー"},
    {DownloadRow::Unlha32, "unlha32", "Check3", "UNLHA32 ．DLL　のダウンロード", "Label8",
     "archiver_home2", "/lib/", "", "Command3", "UNLHA32 ．DLL　の解凍・コピー"},
    {DownloadRow::Cty, "cty", "Check5", "CTY ．dat　のダウンロード", "Label11", "cty_home", "/cty/",
     "", "Command4", "CTY ．dat　の解凍・コピー"},
    {DownloadRow::Ardx, "ardx", "Check6", "ARDX ．dat　のダウンロード", "Label13", "zlog_data_home",
     "/zlog/dx/ardx.dat", "ARDX.DAT", "", ""},
    {DownloadRow::Arrl10, "arrl10", "Check7", "ARRL10 ．dat　のダウンロード", "Label15",
     "zlog_data_home", "/zlog/dx/arrl10.dat", "ARRL10.DAT", "", ""},
}};

const DownloadRowEntry& specOf(DownloadRow row)
{
    return kRows[static_cast<std::size_t>(row)];
}

void removeIfExists(const fs::path& p)
{
    std::error_code ec;
    fs::remove(p, ec);
}

// A name found on a web page becomes a file of the program folder: it must be a plain name.
bool isPlainFileName(std::string_view name)
{
    if (name.empty() || name.size() > 255 || name == "." || name == "..") {
        return false;
    }
    for (const char c : name) {
        if (c == '/' || c == '\\' || c == ':' || static_cast<unsigned char>(c) < 0x20) {
            return false;
        }
    }
    return true;
}

// The scratch copy of a page: every double quote removed and each line feed made CR LF.
std::string scratchText(std::string_view page)
{
    std::string out;
    out.reserve(page.size() + page.size() / 16);
    for (const char c : page) {
        if (c == '"') {
            continue;
        }
        if (c == '\n') {
            out += "\r\n";
        } else {
            out += c;
        }
    }
    return out;
}

bool isUtf8(std::string_view s)
{
    std::size_t i = 0;
    while (i < s.size()) {
        const auto c = static_cast<unsigned char>(s[i]);
        std::size_t follow = 0;
        if (c < 0x80) {
            follow = 0;
        } else if (c >= 0xC2 && c <= 0xDF) {
            follow = 1;
        } else if (c >= 0xE0 && c <= 0xEF) {
            follow = 2;
        } else if (c >= 0xF0 && c <= 0xF4) {
            follow = 3;
        } else {
            return false;
        }
        if (follow > 0 && i + follow >= s.size()) {
            return false;
        }
        for (std::size_t k = 1; k <= follow; ++k) {
            if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) {
                return false;
            }
        }
        i += follow + 1;
    }
    return true;
}

std::string joinLines(std::initializer_list<std::string_view> lines)
{
    std::string out;
    for (const std::string_view line : lines) {
        if (!out.empty()) {
            out += '\n';
        }
        out += line;
    }
    return out;
}

std::string hex(int code)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%X", static_cast<unsigned>(code));
    return buffer;
}

} // namespace

const std::array<DownloadRowEntry, 6>& downloadRows()
{
    return kRows;
}

const DownloadRowEntry* downloadRowOf(std::string_view word)
{
    for (const DownloadRowEntry& entry : kRows) {
        if (text::equalsNoCase(entry.word, word)) {
            return &entry;
        }
    }
    return nullptr;
}

DataDownloads::DataDownloads(fs::path strPath, const settings::Options& options, net::WebConfig web,
                             base::Trace& trace, base::Dialogs& dialogs,
                             base::RunObserver* observer)
    : m_strPath(std::move(strPath)), m_options(options), m_web(std::move(web)), m_trace(trace),
      m_dialogs(dialogs), m_observer(observer)
{
}

bool DataDownloads::online() const
{
    return m_options.value("inet_flag") == "OK";
}

DownloadRowState& DataDownloads::state(DownloadRow row)
{
    return m_rows[static_cast<std::size_t>(row)];
}

const DownloadRowState& DataDownloads::row(DownloadRow row) const
{
    return m_rows[static_cast<std::size_t>(row)];
}

std::string DataDownloads::label(std::string_view name) const
{
    const auto it = m_labels.find(name);
    return it == m_labels.end() ? std::string() : it->second;
}

void DataDownloads::setLabel(std::string_view name, std::string text)
{
    if (m_observer != nullptr) {
        m_observer->label(name, text);
    }
    m_labels.insert_or_assign(std::string(name), std::move(text));
}

fs::path DataDownloads::inFolder(std::string_view name) const
{
    // The operator's system compares file names without regard to case: a file that is there
    // under another case is the one meant.
    const fs::path found = base::findFileNoCase(m_strPath, name);
    return found.empty() ? m_strPath / fs::path(std::string(name)) : found;
}

void DataDownloads::formRow(DownloadRow row)
{
    const DownloadRowEntry& entry = specOf(row);
    DownloadRowState& s = state(row);
    std::string name(entry.target);
    if (row == DownloadRow::Unlha32) {
        name = m_unlhaName;
    } else if (row == DownloadRow::Cty) {
        name = m_ctyName;
    }
    const std::string home = m_web.endpoint(entry.homeKey);
    const bool nameInPath = entry.target.empty();
    s.source =
        home.empty() ? std::string() : home + std::string(entry.path) + (nameInPath ? name : "");
    s.target = name.empty() ? m_strPath : inFolder(name);
}

std::string DataDownloads::fetchPage(std::string_view homeKey, std::string_view path,
                                     std::string_view htmlName, std::string_view txtName,
                                     std::string (*parse)(std::string_view))
{
    const fs::path html = m_strPath / htmlName;
    const fs::path txt = m_strPath / txtName;
    std::string name;
    const std::string home = m_web.endpoint(homeKey);
    if (home.empty()) {
        m_trace.line("     " + std::string(homeKey) + " : 未設定 (Vornhale_web.ini [web])");
    } else {
        const std::string url = home + std::string(path);
        const net::FetchResult got = net::fetchToFile(url, html, m_web.timeouts());
        m_trace.line("     " + url + " : " + (got.ok ? "OK" : got.error));
        if (got.ok) {
            try {
                const std::string copy = scratchText(text::readFileBytes(html));
                std::ofstream out(txt, std::ios::binary | std::ios::trunc);
                out.write(copy.data(), static_cast<std::streamsize>(copy.size()));
                out.close();
                name = parse(text::readFileBytes(txt));
            } catch (const failure::Failure& f) {
                m_trace.line("エラー発生 ：　" + std::to_string(f.number()));
            }
        }
    }
    removeIfExists(html);
    removeIfExists(txt);
    return name;
}

std::string DataDownloads::ctyNameFromPage(std::string_view pageBytes)
{
    const std::string copy = scratchText(pageBytes);
    for (const std::string_view line : text::splitLines(copy)) {
        if (line.find(".zip>") == std::string_view::npos ||
            line.find("<a href=download/cty-") == std::string_view::npos) {
            continue;
        }
        std::string link = text::replaceAll(line, "\t", "");
        link = text::replaceAll(link, "<dt><a href=", "");
        link = text::replaceAll(link, ">cty.zip</a></dt>", "");
        std::string name(text::trim(text::replaceAll(link, "download/", "")));
        return isPlainFileName(name) ? name : std::string();
    }
    return {};
}

std::string DataDownloads::unlhaNameFromPage(std::string_view pageBytes)
{
    const std::string copy = scratchText(pageBytes);
    const std::string page = isUtf8(copy) ? copy : text::decodeSjis(copy);
    for (const std::string_view line : text::splitLines(page)) {
        if (line.find("・・・ダウンロード") == std::string_view::npos) {
            continue;
        }
        std::string words = text::replaceAll(line, "\t", " ");
        words = text::replaceAll(words, "　", " ");
        for (const std::string& word : text::split(words, " ")) {
            if (word.find(".EXE") != std::string::npos) {
                return isPlainFileName(word) ? word : std::string();
            }
        }
    }
    return {};
}

std::string DataDownloads::get_cty_dat_name()
{
    m_trace.line("Private Sub get_cty_dat_name()");
    if (!online()) {
        return m_ctyName;
    }
    m_ctyName = fetchPage("cty_home", "/cty/", "cty_dat.html", "cty_dat.txt", &ctyNameFromPage);
    return m_ctyName;
}

std::string DataDownloads::get_unlha_name()
{
    m_trace.line("Private Sub get_unlha_name()");
    if (!online()) {
        return m_unlhaName;
    }
    m_unlhaName = fetchPage("archiver_home", "/archiver/lib/unlha32.html", "unlha32.html",
                            "unlha32.txt", &unlhaNameFromPage);
    return m_unlhaName;
}

void DataDownloads::Form_Load(bool fromStartCheck)
{
    m_trace.line("Private Sub Form_Load()  frmDownLoad");
    if (!online()) {
        return;
    }
    for (const DownloadRowEntry& entry : kRows) {
        if (!entry.target.empty()) {
            formRow(entry.row);
            state(entry.row).exists = !base::findFileNoCase(m_strPath, entry.target).empty();
        }
    }
    setLabel("Label3", row(DownloadRow::Th505api).source);

    const std::string unlha = get_unlha_name();
    formRow(DownloadRow::Unlha32);
    state(DownloadRow::Unlha32).exists =
        !unlha.empty() && !base::findFileNoCase(m_strPath, unlha).empty();
    setLabel("Label6", unlha + "  " + row(DownloadRow::Unlha32).source);

    const std::string cty = get_cty_dat_name();
    formRow(DownloadRow::Cty);
    state(DownloadRow::Cty).exists = !cty.empty() && !base::findFileNoCase(m_strPath, cty).empty();
    setLabel("Label2", cty + "  " + row(DownloadRow::Cty).source);

    if (fromStartCheck) {
        for (const DownloadRow r : {DownloadRow::Th505api, DownloadRow::Unlha32, DownloadRow::Cty,
                                    DownloadRow::Ardx, DownloadRow::Arrl10}) {
            if (!row(r).exists) {
                state(r).tick = true;
            }
        }
    }
}

bool DataDownloads::cmdStart()
{
    m_trace.line("Private Sub cmdStart_Click()  frmDownLoad");
    for (const DownloadRowEntry& entry : kRows) {
        setLabel(entry.label, "");
        state(entry.row).detail.clear();
    }
    setLabel("Label5", std::string(kDownloading));

    bool allCame = true;
    bool needsUnpacking = false;
    for (const DownloadRowEntry& entry : kRows) {
        DownloadRowState& s = state(entry.row);
        if (!s.tick) {
            continue;
        }
        formRow(entry.row);
        const bool named = !(entry.target.empty() && s.target == m_strPath);
        if (s.source.empty()) {
            s.detail =
                std::string(entry.homeKey) + " が Vornhale_web.ini の [web] に設定されていません";
        } else if (!named) {
            s.detail = "ダウンロードするファイル名がページに見つかりません: " + s.source;
        } else {
            const net::FetchResult got = net::fetchToFile(s.source, s.target, m_web.timeouts());
            if (!got.ok) {
                s.detail =
                    got.httpStatus != 0 ? "HTTP " + std::to_string(got.httpStatus) : got.error;
            }
        }
        m_trace.line("     " + std::string(entry.word) + " : " + s.source + " -> " +
                     s.target.string() + (s.detail.empty() ? "" : " : " + s.detail));
        const bool came = s.detail.empty();
        s.label = std::string(came ? kDone : kFailed);
        setLabel(entry.label, s.label);
        allCame = allCame && came;
        if (came && entry.row <= DownloadRow::Cty) {
            needsUnpacking = true;
            setLabel("Label5", std::string(kNeedsUnpacking));
        }
    }
    if (!needsUnpacking) {
        setLabel("Label5", std::string(allCame ? kDone : kFailed));
    }
    if (!allCame) {
        // err_disp
        m_dialogs.message(
            "　　エラーが発生しました！",
            joinLines({"エラーが発生しました。", "接続先のアドレス、ファイル名に変更の",
                       "可能性があります。確認してから別途、", "各自で入手して下さい。"}),
            base::Dialogs::Icon::Exclamation);
    }
    for (DownloadRowState& s : m_rows) {
        s.tick = false;
    }
    return allCame;
}

UnpackOutcome DataDownloads::Command1()
{
    m_trace.line("Private Sub UnLZH_dll()");
    UnpackOutcome out;
    out.title = std::string(kTitle);
    // The download is named with 505, the unpacking opens the archive named with 503.
    const fs::path archive = inFolder("TH503API.LZH");
    const fs::path folder = m_strPath / "TH503API";
    const ExtractResult r = Archive::isValid(archive)
                                ? Archive::extractAll(archive, folder, /*junkPaths=*/true)
                                : ExtractResult{false, 0, "not an LZH archive", {}};
    if (!r.ok) {
        out.detail = r.error;
        out.text = archive.string() +
                   " は正しい書庫ファイルではありません。\n又は LZH ファイルがありません。";
    } else {
        out.ok = true;
        out.count = r.count;
        out.text = std::to_string(r.count) + " 個解凍しました。\n" +
                   "TH503API/THDLL2VB.DLL を Windows のシステムフォルダにコピーする手順は、"
                   "このプラットフォームでは行いません。";
        setLabel("Label5", std::to_string(r.count) + " 個解凍しました。");
    }
    m_trace.line("     " + out.text + (out.detail.empty() ? "" : " : " + out.detail));
    m_dialogs.message(out.title, out.text,
                      out.ok ? base::Dialogs::Icon::Information : base::Dialogs::Icon::Exclamation);
    return out;
}

UnpackOutcome DataDownloads::Command2()
{
    UnpackOutcome out;
    out.applies = false;
    out.title = std::string(kTitle);
    out.text = "unzp542.exe は Windows 用の自己解凍インストーラです。このプラットフォームでは"
               "実行しません (ZIP は内蔵の展開機能で扱います)。";
    m_trace.line("     " + out.text);
    m_dialogs.message(out.title, out.text, base::Dialogs::Icon::Information);
    return out;
}

UnpackOutcome DataDownloads::Command3()
{
    UnpackOutcome out;
    out.applies = false;
    out.title = std::string(kTitle);
    const std::string name =
        m_unlhaName.empty() ? std::string("UNLHA32 のインストーラ") : m_unlhaName;
    out.text = name + " は Windows 用の自己解凍インストーラです。このプラットフォームでは"
                      "実行しません (LZH は内蔵の展開機能で扱います)。";
    m_trace.line("     " + out.text);
    m_dialogs.message(out.title, out.text, base::Dialogs::Icon::Information);
    return out;
}

UnpackOutcome DataDownloads::Command4()
{
    m_trace.line("Private Sub Command4_Click()  frmDownLoad");
    UnpackOutcome out;
    int code = 0;
    const fs::path archive = m_ctyName.empty() ? m_strPath : inFolder(m_ctyName);
    std::string folderName = archive.filename().string();
    if (text::endsWith(text::lower(folderName), ".zip")) {
        folderName.resize(folderName.size() - 4);
    } else {
        folderName += "_files";
    }
    const fs::path folder = m_strPath / folderName;

    std::error_code ec;
    if (m_ctyName.empty() || !Archive::isValid(archive)) {
        code = kNotAnArchive;
        out.detail = "not a ZIP archive: " + archive.string();
    } else if (const ExtractResult r = Archive::extractAll(archive, folder); !r.ok) {
        code = kRefused;
        out.detail = r.error;
    } else if (const fs::path cty = base::findFileNoCase(folder, "cty.dat"); cty.empty()) {
        code = kNoCtyDat;
        out.detail = "no cty.dat in " + archive.string();
    } else {
        out.count = r.count;
        // The new list replaces the old one only when it is wholly copied.
        const fs::path target = inFolder("cty.dat");
        const fs::path partial = m_strPath / "cty.dat.download";
        fs::copy_file(cty, partial, fs::copy_options::overwrite_existing, ec);
        if (!ec) {
            fs::rename(partial, target, ec);
        }
        if (ec) {
            removeIfExists(partial);
            code = kCopyFailed;
            out.detail = ec.message();
        }
    }
    if (code == 0) {
        out.ok = true;
        out.title = "Succeeded!!";
        out.text = "cty.dat の解凍・コピーに成功しました。";
    } else {
        out.title = "Failed";
        out.text = "cty.dat の解凍・コピーに失敗しました。Error Code:0x" + hex(code);
    }
    m_trace.line("     " + out.text + (out.detail.empty() ? "" : " : " + out.detail));
    m_dialogs.message(out.title, out.text,
                      out.ok ? base::Dialogs::Icon::Information : base::Dialogs::Icon::Exclamation);
    return out;
}

UnpackOutcome DataDownloads::unpack(DownloadRow row)
{
    switch (row) {
    case DownloadRow::Th505api:
        return Command1();
    case DownloadRow::Unzip32:
        return Command2();
    case DownloadRow::Unlha32:
        return Command3();
    case DownloadRow::Cty:
        return Command4();
    case DownloadRow::Ardx:
    case DownloadRow::Arrl10:
        break;
    }
    UnpackOutcome none;
    none.applies = false;
    none.ok = true;
    none.text = std::string(specOf(row).word) + " は解凍の必要がありません。";
    return none;
}

} // namespace vornhale::tools
