#include "settings/ConfigModel.h"

#include "base/Trace.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <filesystem>
#include <system_error>

namespace vornhale::settings {
namespace {

namespace fs = std::filesystem;
using base::Colour;
using K = ConfigModel::RowKind;

constexpr ConfigModel::Row kRows[] = {
    {"txtZlog_dat", "cmdZlog_dat", "lblZlog_dat", "フォルダ　：　 CTY ．ｄａｔ 他 ﾌｧｲﾙ",
     "zlog_dat_dir", K::Folder, true, "CT 用 CTY.dat 他 ﾌｧｲﾙ ( *.dat )|*.dat", ""},
    {"txtProv_mas_dat", "cmdProv_mas_dat", "lblProv_mas_dat",
     "　フォルダ　：　 個　  　別    ｄａｔ  ﾌｧｲﾙ", "Prov_mas_dat_dir", K::Folder, true,
     "zLog 用 各種 dat ﾌｧｲﾙ ( PACC.dat 等 )|*.dat", ""},
    {"txtName_mas", "cmdName_mas", "lblName_mas", "フォルダ　：　NAME_MAS．TXT", "name_mas_dir",
     K::FolderOrNone, true,
     "name_mas.txt  ( name_mas.txt ; name_mas?.txt )|name_mas.txt;name_mas?.txt", "chkNo_name"},
    {"txtQth_mas", "cmdQth_mas", "lblQth_mas", "フォルダ　：　QTH_MAS．TXT", "qth_mas_dir",
     K::FolderOrNone, true, "qth_mas.txt  ( qth_mas.txt )|qth_mas.txt", "chkNo_qth"},
    {"txtMng_z_full_txt", "cmdMng_z_full_txt", "lblMng_z_full_txt",
     "ファイル　：　ＭＮＧ__Vornhale_full ．ｔｘｔ", "mng_z_full_txt_dir", K::MngFile, false,
     "MNG_Vornhale_full.txt )|MNG_Vornhale_full.txt", ""},
    {"txtHamlog_hdb", "cmdHamlog_hdb", "lblHamlog_hdb", "ファイル　：　ハムログの ＊．hｄｂ　常用",
     "hamlog_hdb_dir", K::HamlogFile, false, "Hamlog の *.hdb ﾌｧｲﾙ　常用( *.hdb )|*.hdb", ""},
    {"txtHamlog_hdb_2", "cmdHamlog_hdb_2", "lblHamlog_hdb_2",
     "ファイル　：　ハムログの ＊．hｄｂ　印刷用", "hamlog_hdb_2_dir", K::HamlogFile, false,
     "Hamlog の *.hdb ﾌｧｲﾙ　印刷用( *.hdb )|*.hdb", ""},
    {"txtZloDir", "cmdGetZloDir", "lblZloDir", "フォルダ　： 拡張子 ＺＬＯ ファイル", "zlo_dir",
     K::Folder, true, "zLog のﾊﾞｲﾅﾘｰ･ﾌｧｲﾙ  ( *.zlo )|*.zlo", ""},
    {"txtAllDir", "cmdGetAllDir", "lblAllDir", "フォルダ　： 拡張子 ALL , TXT ﾌｧｲﾙ", "all_dir",
     K::Folder, true, "zLog のﾃｷｽﾄ･ﾌｧｲﾙ  ( *.all ; *.txt )|*.all;*.txt", ""},
    {"txtLogDir", "cmdGetLogDir", "lblLogDir", "フォルダ　： RTCL の LOG ﾌｧｲﾙ", "log_dir",
     K::LogFolder, true, "RTCL の ﾃｷｽﾄ･ﾌｧｲﾙ  ( *.log )|*.log", "chkNo_rtcl"},
};

constexpr std::string_view kTicks[] = {"chkNo_name", "chkNo_qth", "chkNo_rtcl", "Chk_inet",
                                       "Check1"};

bool hasSeparator(std::string_view path)
{
    return path.find('/') != std::string_view::npos || path.find('\\') != std::string_view::npos;
}

bool isFile(std::string_view path)
{
    std::error_code ec;
    return !path.empty() && fs::is_regular_file(fs::path(std::string(path)), ec);
}

bool isFolder(std::string_view path)
{
    std::error_code ec;
    return !path.empty() && fs::is_directory(fs::path(std::string(path)), ec);
}

} // namespace

std::span<const ConfigModel::Row> ConfigModel::rows()
{
    return kRows;
}

const ConfigModel::Row* ConfigModel::rowOf(std::string_view name)
{
    for (const Row& r : kRows) {
        if (r.textBox == name || r.button == name ||
            (!r.notUsedTick.empty() && r.notUsedTick == name)) {
            return &r;
        }
    }
    return nullptr;
}

ConfigModel::ConfigModel(SettingsFiles& files, base::Trace* trace, bool upgradeFromOld)
    : m_files(files), m_trace(trace), m_upgrade(upgradeFromOld)
{
    for (const Row& r : kRows) {
        m_enabled[std::string(r.button)] = true;
        m_enabled[std::string(r.textBox)] = true;
    }
    for (std::string_view t : kTicks) {
        m_ticks[std::string(t)] = false;
    }
    m_enabled["cmdSave"] = true;
    m_enabled["cmdOK"] = true;
    m_enabled["cmdEnd"] = true;
    m_labelColour.fill(Colour::Black);
}

void ConfigModel::changed()
{
    if (m_listener) {
        m_listener();
    }
}

const std::string& ConfigModel::text(std::string_view name) const
{
    static const std::string none;
    const auto it = m_texts.find(name);
    return it == m_texts.end() ? none : it->second;
}

bool ConfigModel::tick(std::string_view name) const
{
    const auto it = m_ticks.find(name);
    return it != m_ticks.end() && it->second;
}

bool ConfigModel::enabled(std::string_view name) const
{
    const auto it = m_enabled.find(name);
    return it == m_enabled.end() || it->second;
}

bool ConfigModel::greyed(std::string_view textBox) const
{
    const Row* r = rowOf(textBox);
    return r != nullptr && !r->notUsedTick.empty() && tick(r->notUsedTick);
}

// ---- Load ---------------------------------------------------------------------------------

void ConfigModel::set_read_cfg2()
{
    const Options& o = m_files.options();
    for (const Row& r : kRows) {
        m_texts[std::string(r.textBox)] = o.value(r.key);
    }
    m_texts["Text1"] = o.value("No_QSL_moji");
    m_texts["Text2"] = o.value("buro_QSL_moji");
    // A folder declared as not used ticks its box, as a click would, and turns the lookup off;
    // any other value leaves the lookup on.
    for (const Row& r : kRows) {
        if (r.notUsedTick.empty()) {
            continue;
        }
        const bool notUsed = o.value(r.key) == kNotUsed;
        if (notUsed) {
            setNotUsed(r.notUsedTick, true);
        } else {
            if (r.notUsedTick == "chkNo_name") {
                m_nameLookup = true;
            } else if (r.notUsedTick == "chkNo_qth") {
                m_qthLookup = true;
            } else {
                m_rtclLookup = true;
            }
        }
    }
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        checkRow(i);
    }
}

void ConfigModel::Form_Load_frmConfig()
{
    m_loading = true;
    Options& o = m_files.options();

    const std::string& flag = o.value("No_QSL_moji_set_flag");
    if (flag != "0" && !flag.empty()) {
        if (text::trim(o.value("No_QSL_moji")).empty()) {
            o.set("No_QSL_moji", " ");
        }
    } else {
        o.set("No_QSL_moji", "N");
    }

    if (o.value("inet_flag").empty()) {
        o.set("inet_flag", "NO");
    }
    if (o.value("buro_QSL_moji").empty()) {
        o.set("buro_QSL_moji", "N");
    }

    const bool fileThere = m_files.exists("Vornhale_cfg.ini");
    if (fileThere) {
        m_caption = "［ 環境設定 ］ Vornhale_ｃfg．ｉｎｉ を編集・作成します。";
        traceFile();
        set_read_cfg2();
    } else {
        m_caption = "［ 環境設定 ］ Vornhale_ｃｆｇ.ini を新規作成します。";
        m_files.make_Vornhale_cfg_ini();
        set_read_cfg2();
        m_labelColour.fill(Colour::Red);
        m_lblMsg = "設定不良、又は空白あり";
        m_lblMsgColour = Colour::Red;
        m_lblMsg2 = "存在しない、又は　空白項目がある場合には保存出来ません！";
        m_enabled["cmdSave"] = false;
    }

    m_ticks["Chk_inet"] = o.value("inet_flag") == "OK";
    // Both stored answers show the box on: kept as the program always had it.
    const std::string& dxcc55 = o.value("DXCC_mas_txt_55_use");
    m_ticks["Check1"] = dxcc55 == "Yes" || dxcc55 == "No";

    sp_flag_Chk();
    bool anyInvalid = false;
    for (bool bad : m_invalid) {
        anyInvalid = anyInvalid || bad;
    }
    if (anyInvalid) {
        m_lblMsg = "作成必要";
        m_lblMsgColour = Colour::Red;
        m_enabled["cmdOK"] = false;
        m_enabled["cmdSave"] = false;
    }
    m_lblMsg1 = "フォルダ　の場合には　グループのどれか一";
    m_loading = false;
    changed();
}

// ---- Rows ---------------------------------------------------------------------------------

bool ConfigModel::rowValid(std::size_t row) const
{
    const Row& r = kRows[row];
    const std::string& t = text(r.textBox);
    switch (r.kind) {
    case RowKind::Folder:
        return !text::trim(t).empty();
    case RowKind::FolderOrNone:
        return !text::trim(t).empty() || tick(r.notUsedTick);
    case RowKind::MngFile:
        return isFile(t) && !text::trim(t).empty();
    case RowKind::HamlogFile:
        return isFile(t) && hasSeparator(t);
    case RowKind::LogFolder:
        return tick(r.notUsedTick) || (isFolder(t) && hasSeparator(t));
    }
    return false;
}

void ConfigModel::checkRow(std::size_t row)
{
    const bool valid = rowValid(row);
    m_invalid.at(row) = !valid;
    m_labelColour.at(row) = valid ? Colour::Black : Colour::Red;
    if (kRows[row].kind == RowKind::LogFolder && tick(kRows[row].notUsedTick)) {
        m_rtclLookup = false;
    }
    if (!m_loading) {
        sp_flag_Chk();
    }
}

void ConfigModel::sp_flag_Chk()
{
    int sum = 0;
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        m_invalid[i] = !rowValid(i);
        sum += m_invalid[i] ? 1 : 0;
    }
    if (sum > 0) {
        m_enabled["cmdOK"] = false;
        m_enabled["cmdSave"] = false;
        m_lblMsg = "空白あり";
        m_lblMsgColour = Colour::Red;
        m_lblMsg2 = "空白項目がある場合には保存出来ません！";
    } else {
        m_enabled["cmdOK"] = true;
        m_enabled["cmdSave"] = true;
        m_lblMsg = "作成可能";
        m_lblMsgColour = Colour::Black;
        m_lblMsg2 = "「保存」を押して下さい。　「ＯＫ」でメイン画面に戻ります。";
    }
}

void ConfigModel::setNotUsed(std::string_view tickName, bool on)
{
    const Row* r = rowOf(tickName);
    if (r == nullptr) {
        return;
    }
    const std::string box(r->textBox);
    m_ticks[std::string(tickName)] = on;
    bool lookup = true;
    if (on) {
        m_remembered[box] = text(box);
        m_texts[box] = std::string(kNotUsed);
        m_enabled[std::string(r->button)] = false;
        lookup = false;
    } else {
        m_texts[box] = text::replaceAll(m_remembered[box], kNotUsed, "");
        m_enabled[std::string(r->button)] = true;
    }
    if (tickName == "chkNo_name") {
        m_nameLookup = lookup;
    } else if (tickName == "chkNo_qth") {
        m_qthLookup = lookup;
    } else {
        m_rtclLookup = lookup;
    }
}

// ---- Actions ------------------------------------------------------------------------------

void ConfigModel::editText(std::string_view name, std::string_view value)
{
    const Row* r = rowOf(name);
    if (name == "Text1" || name == "Text2") {
        m_texts[std::string(name)] = std::string(value);
    } else if (r != nullptr && r->textBox == name) {
        m_texts[std::string(name)] = std::string(value);
        checkRow(static_cast<std::size_t>(r - kRows));
    } else {
        return;
    }
    changed();
}

void ConfigModel::clickTick(std::string_view name)
{
    if (name == "Chk_inet" || name == "Check1") {
        m_ticks[std::string(name)] = !tick(name);
        changed();
        return;
    }
    const Row* r = rowOf(name);
    if (r == nullptr || r->notUsedTick != name) {
        return;
    }
    setNotUsed(name, !tick(name));
    checkRow(static_cast<std::size_t>(r - kRows));
    changed();
}

void ConfigModel::browseChosen(std::string_view button, std::string_view path)
{
    const Row* r = rowOf(button);
    if (r == nullptr || path.empty()) {
        return;
    }
    std::string value(path);
    if (r->folder) {
        const auto cut = value.find_last_of("/\\");
        value = cut == std::string::npos ? std::string() : value.substr(0, cut + 1);
    }
    editText(r->textBox, value);
}

void ConfigModel::cmdSave()
{
    if (m_upgrade) {
        // The old environment goes at this moment only, so that leaving the dialog with the
        // forced end keeps it.
        std::error_code ec;
        fs::remove(m_files.file("Vornhale_cfg.ini"), ec);
        m_upgrade = false;
    }
    Options& o = m_files.options();
    for (const Row& r : kRows) {
        o.set(r.key, text(r.textBox));
    }
    std::string mark = text::left(text("Text1"), 1);
    if (mark.empty()) {
        mark = " ";
    }
    o.set("No_QSL_moji", mark);
    o.set("buro_QSL_moji", text::left(text("Text2"), 1));
    o.set("No_QSL_moji_set_flag", "1");
    o.set("inet_flag", tick("Chk_inet") ? "OK" : "NO");
    o.set("DXCC_mas_txt_55_use", tick("Check1") ? "Yes" : "No");
    m_files.ini_write_cfg();
    traceFile();
    m_lblMsg = "保存完了";
    m_lblMsgColour = Colour::Black;
    m_lblMsg2 = "「ＯＫ」でメイン画面に戻ります。";
    m_enabled["cmdOK"] = true;
    changed();
}

void ConfigModel::cmdOK()
{
    m_lblMsg2 = "　　　メイン画面に戻ります．．．．．．";
    changed();
}

void ConfigModel::traceFile()
{
    if (m_trace == nullptr) {
        return;
    }
    m_trace->line("   write_Vornhale_cfg_ini");
    const fs::path file = m_files.file("Vornhale_cfg.ini");
    std::error_code ec;
    if (!fs::is_regular_file(file, ec)) {
        return;
    }
    for (const std::string& line : text::readLines(file)) {
        m_trace->line(line);
    }
}

} // namespace vornhale::settings
