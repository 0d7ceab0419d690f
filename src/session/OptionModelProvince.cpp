// The province master rules: the choice by the contest, the state-item clash, the start.

#include "session/OptionModel.h"

#include "readers/ContestTags.h"
#include "session/OptionModelShared.h"
#include "settings/PeriodModel.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/Utf8.h"

#include <system_error>

namespace vornhale::session {

using base::Colour;
using namespace optionrules;
// ---- Province -----------------------------------------------------------------------------


void OptionModel::Check5_Chk()
{
    const bool on = tick("Check5");
    for (std::string_view name : {"cmdSetMas_mas", "cmdSetMas_dat", "Frame13", "Frame14"}) {
        setEnabled(name, on);
    }
    enableGroup("Option3", on);
    for (int i = 0; i <= 3; ++i) {
        setEnabled("Option4(" + std::to_string(i) + ")", on);
    }
    setEnabled("txtProv_moji", on && tick("Option4(3)"));
}

void OptionModel::searchStateCell()
{
    m_stateCell = {};
    for (int row = 1; row <= 2 && m_stateCell.row == 0; ++row) {
        const auto cells = text::split(m_options.value(row == 1 ? "Rmks1_cfg" : "Rmks2_cfg"), ",");
        for (std::size_t i = 0; i < cells.size() && i < 12; ++i) {
            if (cells[i] == kStateItem) {
                m_stateCell = {row, static_cast<int>(i)};
                break;
            }
        }
    }
}

void OptionModel::provinceTagChain()
{
    if (const std::string_view contest = readers::contestOfFileName(m_facts.in_name); !contest.empty()) {
        m_facts.cont_name = std::string(contest);
        if (contest == "IOTA Contest") {
            setLabel("lblMas_dat_zlo", "Prov , Oblast 取得は不可能です｡", Colour::Red);
        }
    }
    if (!m_facts.read_cont_name_zlo) {
        return;
    }
    const std::string master = m_facts.read_cont_name_zlo(m_facts.cont_name);
    if (!master.empty()) {
        m_facts.mas_dat_name = master;
        setCaption("lblMas_dat", std::filesystem::path(master).filename().string());
        setLabel("lblMas_dat_zlo", "入力ﾌｧｲﾙ名より推測して指定しました。不適切なら再選択のこと",
                 Colour::Green);
        if (fileExists(master)) {
            setEnabled("cmdDisp_mas_dat", true);
        }
    }
}

OptionModel::StartCheck OptionModel::startCheck(const Options& run, std::string master) const
{
    StartCheck check;
    if (!run.tick("Check5")) {
        return check;
    }
    if (master.empty()) {
        std::string contest = m_facts.cont_name;
        if (const std::string_view fromName = readers::contestOfFileName(m_facts.in_name);
            !fromName.empty()) {
            contest = std::string(fromName);
        }
        if (m_facts.read_cont_name_zlo) {
            master = m_facts.read_cont_name_zlo(contest);
        }
    }
    if (master.empty() || !fileExists(master)) {
        check.go = false;
        check.status = "Province の Master File の指定をして下さい。";
        if (!master.empty()) {
            check.status += " " + master;
        }
        return check;
    }
    for (const char* key : {"Rmks1_cfg", "Rmks2_cfg"}) {
        for (const std::string& cell : text::split(run.value(key), ",")) {
            if (text::trim(cell) == kStateItem) {
                check.go = false;
                check.status = std::string(kStateClash);
                return check;
            }
        }
    }
    check.master = master;
    return check;
}

void OptionModel::Check5_Click()
{
    const bool on = tick("Check5");
    if (!on) {
        setColour("Check5", Colour::Black);
        setEnabled("cmdDisp_mas_dat", false);
        setEnabled("cmdSetMas_mas", false);
        store("Check5", "0");
    } else {
        setColour("Check5", Colour::Blue);
        setEnabled("cmdSetMas_mas", true);
        const std::filesystem::path provFolder = m_facts.strPath / "Prov/";
        if (sameFolder(m_options.value("Prov_mas_dat_dir"), provFolder)) {
            setCaption("cmdSetMas_mas", "Master ファイルの指定");
            setToolTip("cmdSetMas_mas", "Master ファイル *.mas 及び *.dat の指定をします。");
            setEnabled("cmdSetMas_dat", false);
        } else {
            setCaption("cmdSetMas_mas", "Master ＊．ｍａｓ の指定");
            setToolTip("cmdSetMas_mas", "Master ファイル *.mas の指定をします。");
            setEnabled("cmdSetMas_dat", true);
        }
        store("Check5", "1");
    }

    if (!hasInput()) {
        setEnabled("cmdSetMas_mas", false);
        setEnabled("cmdSetMas_dat", false);
    } else if (on) {
        for (std::string_view name : {"cmdSetMas_mas", "cmdSetMas_dat", "Frame13", "Frame14"}) {
            setEnabled(name, true);
        }
        enableGroup("Option3", true);
        enableGroup("Option4", true);
        if (m_facts.mas_dat_name.empty()) {
            if (m_facts.f_type != "zlo") {
                setCaption("lblMas_dat", "Master File の指定をして下さい。");
                setCaption("lblMas_dat_zlo", "＊．ｚｌｏ なら自動選択可能です。");
                setEnabled("cmdStart", false);
                setEnabled(kStartButtonTool, false);
                setStatus("Province の Master File の指定をして下さい。", Colour::Red);
            } else if (m_facts.read_cont_name_zlo) {
                const std::string master = m_facts.read_cont_name_zlo(m_facts.cont_name);
                if (!master.empty()) {
                    m_facts.mas_dat_name = master;
                    setCaption("lblMas_dat", std::filesystem::path(master).filename().string());
                }
            }
        }
    }

    // The state column and the province cannot both fill a remark.
    searchStateCell();
    if (on && m_stateCell.row != 0) {
        if (m_layout != nullptr) {
            m_layout->markCellRed(m_stateCell.row, m_stateCell.index);
        }
        setStatus(kStateClash, Colour::Red);
    }

    if (on && hasInput()) {
        provinceTagChain();
    }

    Check5_Chk();
    if (m_layout != nullptr) {
        m_layout->refreshCellColours();
    }
    chk_go();
}

OptionModel::MasterDialog OptionModel::provinceMasterDialog(std::string_view button) const
{
    const std::string masFolder = (m_facts.strPath / "Prov" / "").string();
    const std::string datFolder = m_options.value("Prov_mas_dat_dir");
    const bool merged = std::filesystem::path(masFolder) == std::filesystem::path(datFolder);
    MasterDialog d;
    if (merged) {
        d.folder = masFolder;
        d.title = masFolder + "の マスターファイルを  開く ....";
        d.filter = "　Provinces_マスターファイル ( *.mas , *.dat )|*.mas;*.dat|";
    } else if (button == "cmdSetMas_dat") {
        d.folder = datFolder;
        d.title = datFolder + "の ＊．ｄａｔ ファイルを  開く ....";
        d.filter = "　Provinces_マスターファイル ( *.dat )|*.dat|";
    } else {
        d.folder = masFolder;
        d.title = masFolder + "の ＊．ｍａｓ ファイルを  開く ....";
        d.filter = "　Provinces_マスターファイル ( *.mas )|*.mas|";
    }
    return d;
}

void OptionModel::provinceMasterChosen(const std::string& path)
{
    if (path.empty()) {
        setStatus("マスターは未選択です。");
        return;
    }
    m_facts.mas_dat_name = path;
    setCaption("lblMas_dat", std::filesystem::path(path).filename().string());
    setLabel("lblMas_dat_zlo", "", Colour::Black);
    setEnabled("cmdDisp_mas_dat", fileExists(path));
    setStatus("");
    chk_go();
}

void OptionModel::chk_go()
{
    bool go = hasInput();
    if (tick("Check5")) {
        const std::string& master = m_facts.mas_dat_name;
        go = go && fileExists(master) && hasSeparator(master) && !m_facts.contestMismatch;
    }
    if (control("lblShori").caption == kStateClash) {
        go = false;
    }
    setEnabled("cmdStart", go);
    setEnabled(kStartButtonTool, go);
}

} // namespace vornhale::session
