#include "session/ProgramStart.h"

#include "base/DataFiles.h"
#include "base/FileMask.h"
#include "base/FileReplace.h"
#include "settings/WorkingFolderCleanup.h"
#include "settings/Options.h"
#include "settings/PeriodModel.h"
#include "settings/RemarkHistory.h"
#include "settings/WindowPositions.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <tuple>

namespace vornhale::session {
namespace {

namespace fs = std::filesystem;

// A settings file rewritten from its scratch copy: the copy goes to the temporary name and is
// renamed into place, so the file is never seen half copied.
void copyIntoPlace(const fs::path& scratch, const fs::path& file, std::error_code& ec)
{
    const fs::path writing = base::writingNameOf(file);
    if (fs::copy_file(scratch, writing, fs::copy_options::overwrite_existing, ec)) {
        fs::rename(writing, file, ec);
    }
    if (ec) {
        std::error_code ignored;
        fs::remove(writing, ignored);
    }
}

constexpr std::string_view kNotUsed = "使用しない";

bool isFile(const fs::path& p)
{
    std::error_code ec;
    return fs::is_regular_file(p, ec);
}

void removeIfExists(const fs::path& p)
{
    std::error_code ec;
    fs::remove(p, ec);
}

std::string joinLines(const std::vector<std::string_view>& lines)
{
    std::string out;
    for (const auto line : lines) {
        if (!out.empty()) {
            out += '\n';
        }
        out += line;
    }
    return out;
}

std::string crLfText(const std::vector<std::string>& lines)
{
    std::string out;
    for (const std::string& line : lines) {
        out += line;
        out += "\r\n";
    }
    return out;
}

// The nine folder and file settings whose emptiness keeps the environment settings first.
constexpr const char* kFolderSettings[] = {
    "zlog_dat_dir",   "name_mas_dir",     "mng_z_full_txt_dir",
    "hamlog_hdb_dir", "hamlog_hdb_2_dir", "zlo_dir",
    "all_dir",        "log_dir",          "Prov_mas_dat_dir",
};

} // namespace

double versionValue(std::string_view version)
{
    std::string v = text::replaceAll(version, "t", "");
    v = text::replaceAll(v, "k", "");
    return text::val(v);
}

ProgramStart::ProgramStart(const base::ProgramFolder& folder, settings::SettingsFiles& files,
                           base::Trace& trace, base::Dialogs& dialogs)
    : m_folder(folder), m_files(files), m_trace(trace), m_dialogs(dialogs)
{
}

void ProgramStart::traceSettingsFiles()
{
    for (const char* name : {"Vornhale_cfg.ini", "Vornhale_new.ini", "Vornhale.ini"}) {
        const fs::path path = m_files.file(name);
        if (!isFile(path)) {
            continue;
        }
        m_trace.line(std::string("=========  ") + name + "  ==== 起動時 =======");
        try {
            for (const std::string& line : text::readLines(path)) {
                m_trace.line(line);
            }
        } catch (const std::exception&) {
            m_trace.line("読めません : " + path.string());
        }
    }
}

StartDecision ProgramStart::Main(const fs::path& seedFrom)
{
    m_folder.makeFolders();
    std::error_code ec;
    fs::create_directories(m_folder.Henkan_Result, ec);

    m_trace.line("strPath : " + m_folder.strPath.string());
    // A new program folder (one that has no settings yet) gets the sample files that come
    // with the program before any setting or required file is looked at. Later a missing
    // file is the operator's to restore, as the required-file dialogs tell.
    const bool newFolder =
        !m_files.exists("Vornhale_cfg.ini") && !m_files.exists("Vornhale_new.ini");
    for (const fs::path& seeded :
         newFolder ? seedProgramFolder(m_folder.strPath, seedFrom) : std::vector<fs::path>()) {
        m_trace.line("     seed : " + seeded.string());
    }
    // The prefix list comes from the system's own copy, kept current by its package.
    const fs::path systemCty = base::systemCtyDat();
    if (newFolder && !systemCty.empty() && !fs::exists(m_folder.strPath / "cty.dat", ec) &&
        fs::copy_file(systemCty, m_folder.strPath / "cty.dat", ec)) {
        m_trace.line("     seed : " + systemCty.string());
    }
    traceSettingsFiles();
    m_trace.line("Public Sub Main()");
    return startSettings();
}

StartDecision ProgramStart::startSettings()
{
    settings::Options& o = m_files.options();
    StartDecision d;

    removeIfExists(m_files.file("Vornhale.ini2"));
    Check_ver();
    if (m_files.exists("Vornhale_cfg.ini")) {
        m_files.ini_read_cfg();
    }

    if (std::trunc(text::val(m_files.lastVersion()) * 100) < 527) {
        d.upgradeFromOld = true;
        removeIfExists(m_files.file("Vornhale_posi.ini"));
    }

    if (m_files.exists("Vornhale_new.ini")) {
        m_files.ini_read_new();
        if (std::trunc(versionValue(m_files.lastVersion()) * 100) < 325) {
            rewriteWithoutOldDates("Vornhale_new.ini");
            m_files.ini_write_new();
            if (m_files.exists("Vornhale.ini")) {
                rewriteWithoutOldDates("Vornhale.ini");
            }
            if (m_files.exists("Vornhale_fdt.ini")) {
                removeIfExists(m_files.file("Vornhale_fdt.ini"));
                m_files.ini_write_fdt();
            }
        }
    }

    // The position file of a version below 5.30 is written anew, a missing one created.
    try {
        std::string version = text::replaceAll(m_files.lastVersion(), "t", "");
        version = text::replaceAll(version, "k", "");
        settings::maintainPositionFile(m_files.file("Vornhale_posi.ini"), version,
                                       settings::kProgramVersion);
    } catch (const std::exception&) {
        m_trace.line("書き込みできません : " + m_files.file("Vornhale_posi.ini").string());
    }

    for (const char* key : kFolderSettings) {
        if (o.value(key).empty()) {
            ++d.emptyFolderSettings;
            d.emptyFolderKeys.emplace_back(key);
        }
    }

    d.versionNumber =
        static_cast<long>(text::val(text::replaceAll(m_files.lastVersion(), ".", "")));
    if (m_files.exists("Vornhale_Zone_moji.ini")) {
        m_files.ini_read_zone_moji();
    }

    d.environmentFirst = !(m_files.restartMarker() && d.emptyFolderSettings == 0 &&
                           !d.upgradeFromOld && d.versionNumber >= 537);
    if (!d.environmentFirst) {
        m_files.ini_write_cfg();
        m_files.ini_read_new();
    }
    return d;
}

void ProgramStart::Check_ver()
{
    if (!m_files.exists("Vornhale_cfg.ini")) {
        // First start.
        m_files.make_Vornhale_cfg_ini();
        m_files.ini_read_new();
        m_files.make_Vornhale_new_ini();
        m_files.clearRestartMarker();
        m_files.ini_write_new();
    } else {
        if (m_files.exists("Vornhale_new.ini")) {
            m_files.ini_read_new();
        } else {
            m_files.make_Vornhale_new_ini();
            m_files.ini_read_new();
            m_files.clearRestartMarker();
            m_files.ini_write_new();
        }
        if (m_files.exists("Vornhale_cfg.ini")) {
            m_files.ini_read_cfg();
        } else {
            m_files.make_Vornhale_cfg_ini();
            m_files.ini_read_new();
            m_files.clearRestartMarker();
            m_files.ini_write_new();
        }
        if (m_files.exists("Vornhale_fdt.ini")) {
            m_files.ini_read_fdt();
        } else {
            // The stored dates are still inside the option file, in their old form.
            m_files.ini_read_new();
            m_files.clearRestartMarker();
            moveOldDates();
        }
    }
    if (m_files.lastVersion().empty()) {
        m_files.setLastVersion("1");
    }
}

void ProgramStart::moveOldDates()
{
    settings::Options& o = m_files.options();
    try {
        const fs::path file = m_files.file("Vornhale_new.ini");
        const fs::path scratch = m_files.file("Vornhale_new.ini_2");
        std::vector<std::string> kept;
        for (const std::string& line : text::readLines(file)) {
            const auto history = line.find("hamlog_hdb_dir_FileDateTime=");
            const auto manager = line.find("mng_z_full_txt_dir_FileDateTime=");
            if (text::instr(line, "[Sansyou_files]") > 0) {
                continue;
            }
            if (history != std::string::npos) {
                o.set("hamlog_hdb_dir_FileDateTime_QSO",
                      line.substr(history + std::strlen("hamlog_hdb_dir_FileDateTime=")));
                continue;
            }
            if (manager != std::string::npos) {
                o.set("mng_z_full_txt_dir_FileDateTime",
                      line.substr(manager + std::strlen("mng_z_full_txt_dir_FileDateTime=")));
                continue;
            }
            if (text::instr(line, "version=") > 0) {
                kept.push_back("version=" + std::string(settings::kProgramVersion));
                continue;
            }
            kept.push_back(line);
        }
        text::writeFileSjis(scratch, crLfText(kept));
        m_files.ini_write_fdt();
        std::error_code ec;
        copyIntoPlace(scratch, file, ec);
        removeIfExists(scratch);
    } catch (const std::exception&) {
        // An option file that cannot be read or rewritten keeps its old lines.
        m_files.noteWriteFailure(m_files.file("Vornhale_new.ini"));
    }
}

void ProgramStart::rewriteWithoutOldDates(std::string_view name)
{
    const fs::path file = m_files.file(name);
    const fs::path scratch = m_files.file(std::string(name) + "_2");
    try {
        std::vector<std::string> kept;
        for (const std::string& line : text::readLines(file)) {
            if (text::instr(line, "[Sansyou_files]") > 0 ||
                text::instr(line, "_FileDateTime=") > 0) {
                continue;
            }
            kept.push_back(line);
        }
        text::writeFileSjis(scratch, crLfText(kept));
        std::error_code ec;
        copyIntoPlace(scratch, file, ec);
        removeIfExists(scratch);
    } catch (const std::exception&) {
        m_files.noteWriteFailure(file);
    }
}

bool ProgramStart::requiredFile(const fs::path& folder, std::string_view name,
                                std::string_view title, const std::vector<std::string_view>& text)
{
    if (isFile(folder / fs::path(name))) {
        return true;
    }
    m_trace.line(std::string(title));
    m_dialogs.message(title, joinLines(text), base::Dialogs::Icon::Stop);
    return false;
}

bool ProgramStart::Main2_bas_1()
{
    m_trace.line("Public Sub Main2_bas_1()");
    const settings::Options& o = m_files.options();
    for (const auto& [key, file, display] :
         {std::tuple{"name_mas_dir", "name_mas.txt", "name_mas．txt"},
          std::tuple{"qth_mas_dir", "qth_mas.txt", "qth_mas．txt"}}) {
        const std::string& folder = o.value(key);
        if (folder == kNotUsed) {
            continue;
        }
        const std::string title = std::string("　　") + display + " がありません。";
        const std::string line = std::string("[　") + display + "  ] がありません。";
        if (!requiredFile(folder, file, title,
                          {folder, line, "同梱されているサンプルファイルまたは自己作成ファイルを",
                           " フォルダにコピーして下さい。"})) {
            return false;
        }
    }
    const std::vector<std::string_view> copyText = {
        "同梱されているサンプルファイルを", "Vornhale．exe と同じフォルダにコピーして下さい。"};
    return requiredFile(m_folder.strPath, "Vornhale_Rireki.cfg",
                        "　　Vornhale_Ｒｉｒｅｋｉ．ｃｆｇ　がありません。", copyText) &&
           requiredFile(m_folder.strPath, "cont_name_zlo.cfg",
                        "　　ｃｏｎｔ_ｎａｍｅ_ｚｌｏ．ｃｆｇ　がありません。", copyText) &&
           requiredFile(m_folder.strPath, "dxcc_mas.txt",
                        "　　ｄｘｃｃ_ｍａｓ．ｔｘｔ　がありません。", copyText);
}

void ProgramStart::start_Get_Date()
{
    const std::string today = m_files.today();
    const settings::CalendarDate date{static_cast<int>(text::val(today.substr(0, 4))),
                                      static_cast<int>(text::val(today.substr(4, 2))),
                                      static_cast<int>(text::val(today.substr(6, 2)))};
    settings::start_Get_Date(m_files.options(), date, settings::kProgramVersion);
}

bool ProgramStart::Main2_bas_2()
{
    m_trace.line("Public Sub Main2_bas_2()");
    m_files.ini_read_new();
    start_Get_Date();
    if (!file_Chk_con_name()) {
        return false;
    }
    get_need_files1();
    return !m_needFilesAbort;
}

bool ProgramStart::file_Chk_con_name()
{
    const settings::Options& o = m_files.options();
    const fs::path manager = o.value("mng_z_full_txt_dir");
    const std::pair<fs::path, std::string_view> needed[] = {
        {m_folder.strPath, "DXCC_MAS.TXT"},
        {manager.parent_path(), "MNG_Vornhale_full.TXT"},
        {m_folder.strPath, "Vornhale.rmk1"},
        {m_folder.strPath, "Vornhale.rmk2"},
    };
    for (const auto& [folder, name] : needed) {
        if (!base::findFileNoCase(folder, name).empty()) {
            continue;
        }
        const std::string folderText = folder.empty() ? std::string() : (folder / "").string();
        const std::string line1 = "[  " + std::string(name) + "  ]  がありません。";
        const std::string line2 = folderText + "　に ｃｏｐｙ して下さい。";
        m_trace.line(line1);
        m_dialogs.message(
            "　　エラー　：　必要ファイルがありません。",
            joinLines({line1, line2, "必要なら所在を［ 環境設定 ］にて変更して下さい。"}),
            base::Dialogs::Icon::Stop);
        return false;
    }
    return true;
}

std::vector<std::string> ProgramStart::get_need_files1()
{
    m_needFilesAbort = false;
    m_files.ini_write_cfg();
    settings::Options& o = m_files.options();
    const std::string folderText = o.value("zlog_dat_dir");
    const fs::path folder = folderText;
    std::vector<std::string> missing;
    std::vector<std::string_view> lines;
    for (const auto& [name, line] : {std::pair{"cty.dat", "cty ．dat が有りません。"},
                                     std::pair{"ardx.dat", "ardx ．dat が有りません。"},
                                     std::pair{"arrl10.dat", "arrl10 ．dat が有りません。"}}) {
        if (base::findFileNoCase(folder, name).empty()) {
            missing.push_back(name);
            lines.push_back(line);
        }
    }
    if (missing.empty()) {
        return missing;
    }
    const std::string hint = folderText + "にコピーして下さい。";
    lines.push_back(hint);
    constexpr std::string_view title = "　　下記の必要なファイルがありません！";
    if (o.value("inet_flag") != "OK") {
        lines.insert(lines.end(), {"後で自分で入手してから必要フォルダにコピー下さい。",
                                   "常時接続しているインターネット環境があるようでしたら",
                                   "Ｖｏｒｎｈａｌｅ．ｅｘｅを再起動して、「環境設定」画面にて",
                                   "「ＭＮＧ検索する為の常時接続しているインターネット環境がある」を",
                                   "クリックしてレ点を付けて下さい。"});
        m_dialogs.message(title, joinLines(lines), base::Dialogs::Icon::Exclamation);
        return missing;
    }

    lines.insert(lines.end(), {"「は　い」　：　今直ぐにここからダウンロードする。",
                               "「いいえ」　：　後で自分でダウンロードする。"});
    base::Dialogs::Answer answer = base::Dialogs::Answer::No;
    if (m_downloadWindow) {
        answer = m_dialogs.question(title, joinLines(lines), base::Dialogs::Buttons::YesNo,
                                    base::Dialogs::Icon::Question);
    } else {
        // This front end cannot show the download window: the offer is told and answered "No".
        lines.push_back("→ 「いいえ」");
        m_dialogs.message(title, joinLines(lines), base::Dialogs::Icon::Exclamation);
    }
    if (answer != base::Dialogs::Answer::Yes) {
        m_callerMark = "1";
        return missing;
    }
    m_callerMark = "0";
    tools::DataDownloads window(m_folder.strPath, o, net::WebConfig::load(m_folder.strPath),
                                m_trace, m_dialogs);
    window.Form_Load(true);
    m_downloadWindow(window);
    o.set("inet_flag", "OK");
    m_files.ini_write_cfg();
    m_needFilesAbort = true;
    return missing;
}

void ProgramStart::End_Shori(bool deleteWorkingFiles)
{
    // End_Shori_0: the working copy keeps the options of this run for the next load.
    m_files.ini_write_old();
    m_trace.line("Public Sub End_Shori()");
    try {
        const settings::Options& o = m_files.options();
        settings::RemarkHistory::save_rmks2(m_folder.strPath, o.value("txtRmks1"),
                                            o.value("txtRmks2"), false, m_dialogs, &m_trace);
        settings::tmp_file_Del(m_folder, m_trace, &m_files, m_dialogs, deleteWorkingFiles);
        if (!deleteWorkingFiles) {
            return;
        }
        for (const char* name : {"Vornhale.ini2", "Vornhale.001", "Vornhale_rireki.001"}) {
            removeIfExists(m_folder.strPath / name);
        }
        const fs::path zlogFolder = m_files.options().value("zlog_dat_dir");
        if (!zlogFolder.empty()) {
            base::deleteByMask(zlogFolder, "ardx_dat.*");
        }
        for (const char* mask :
             {"dx_mast?.*", "dxcc_?.txt", "dxcc_mas.hdx", "*.dx?", "rtcl_tmp.txt"}) {
            base::deleteByMask(m_folder.drive_path, mask);
        }
    } catch (const std::exception&) {
        m_trace.line("エラー発生");
    }
}

std::vector<fs::path> seedProgramFolder(const fs::path& strPath, const fs::path& seedFrom)
{
    std::vector<fs::path> copied;
    std::error_code ec;
    if (seedFrom.empty() || !fs::is_directory(seedFrom, ec)) {
        return copied;
    }
    for (auto it = fs::recursive_directory_iterator(seedFrom, ec);
         !ec && it != fs::recursive_directory_iterator(); it.increment(ec)) {
        const fs::path relative = fs::relative(it->path(), seedFrom, ec);
        if (ec || relative.filename() == "README.md") {
            continue;
        }
        const fs::path target = strPath / relative;
        if (it->is_directory(ec)) {
            fs::create_directories(target, ec);
            continue;
        }
        if (fs::exists(target, ec)) {
            continue;
        }
        fs::create_directories(target.parent_path(), ec);
        if (fs::copy_file(it->path(), target, ec)) {
            copied.push_back(relative);
        }
    }
    return copied;
}

std::vector<fs::path> traceWriteFailures(settings::SettingsFiles& files, base::Trace& trace)
{
    std::vector<fs::path> failed = files.takeWriteFailures();
    for (const fs::path& p : failed) {
        trace.line("設定ファイルに書き込みできません : " + p.string());
    }
    return failed;
}

} // namespace vornhale::session
