// The window's load order and the dates it fills.

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
// ---- Load ---------------------------------------------------------------------------------

void OptionModel::Form_Load()
{
    m_loading = true;
    setEnabled("mnuQSOBank", false);

    setStatus("");
    setText("txtYYYY", m_options.value("YYYY"));
    setText("txtNo_qsl_cty", m_options.value("No_qsl_cty"));

    const std::string& flag = m_options.value("No_QSL_moji_set_flag");
    if (flag == "0" || flag.empty()) {
        store("No_QSL_moji", "N");
        store("No_QSL_moji_set_flag", "1");
        ini_write_cfg();
    }

    if (!m_loadedOnce) {
        ini_read_new();
        ini_read_cfg();
    } else {
        ini_read_old();
    }

    if (!m_loadedOnce) {
        // A tick without a key is set at the first load from its default and lives in memory
        // until the program ends ("Rcvd の数字は有効" starts on).
        for (const OptionEntry& e : OptionCatalog::all()) {
            if (e.kind == OptionKind::Tick && !e.stored() && m_options.value(e.name).empty()) {
                const std::string initial = OptionCatalog::defaultOf(e, "");
                if (!initial.empty()) {
                    store(e.name, initial);
                }
            }
        }
    }

    setText("txtQSL_Q", m_options.value("QSL_Q"));
    setText("txtQSL_S", m_options.value("QSL_S"));
    // The prefix boxes show their keys too, so that a view starts with what a run will use.
    setText("txtZone_moji", m_options.value("Zone_moji"));
    setText("txtProv_moji", m_options.value("Prov_moji"));
    for (const OptionEntry& e : OptionCatalog::all()) {
        if (e.kind == OptionKind::Tick && !isStartTabTick(e.name)) {
            setTickFromKey(e.name);
        } else if (e.kind == OptionKind::GroupMember && e.member == 0) {
            setGroupFromKey(e.name);
            groupRule(e.name);
        }
    }
    m_loadedOnce = true;
    const bool layoutKeys =
        !m_options.value("Rmks1_cfg").empty() && !m_options.value("Rmks2_cfg").empty();
    if (layoutKeys && m_layout != nullptr && (m_layout->rowSorted(1) || m_layout->rowSorted(2))) {
        m_layout->Disp_Rmks_cfg_bas();
    }

    Form_Load_2();
    Form_Load_3();

    setEnabled("mnuDisp_log2a", false);
    if (m_options.value("mng_search_url").empty()) {
        store("mng_search_url", "Dalmuir");
    }
    m_loading = false;
}

void OptionModel::Form_Load_2()
{
    const bool nameLookup =
        m_files != nullptr ? m_files->nameLookupOn() : m_options.value("name_mas_dir") != kNotUsed;
    for (std::string_view name : {"Frame10", "Check15", "cmdCount"}) {
        setEnabled(name, nameLookup);
    }

    static constexpr std::string_view inputViews[] = {
        "mnuDisp_in", "cmdDisp_in", "control18", "control20", "mnuDisp_dup", "control19",
        "control21",  "入力ﾌｧｲﾙ",   "contest_n", "hamlog_n",  "＊．ｄｕｐ"};
    if (!hasInput()) {
        setLabel("lblIn_name", "ﾒﾆｭｰより入力ﾌｧｲﾙを指定して下さい。", Colour::Red);
        setEnabled("cmdStart", false);
        setEnabled(kStartButtonTool, false);
        for (std::string_view name : inputViews) {
            setEnabled(name, false);
        }
    } else {
        setEnabled("mnuDisp", true);
        for (std::string_view name : inputViews) {
            setEnabled(name, true);
        }
        // The result files and the duplicate list are shown only when they exist.
        const std::filesystem::path in(m_facts.in_name);
        const std::string ext = in.extension().string();
        const std::string dotExt = ext.empty() ? std::string(".") : ext;
        auto outName = [&](std::string_view suffix) {
            return text::replaceAll(m_facts.in_name, dotExt, suffix);
        };
        std::string stem = m_facts.in_name.substr(0, m_facts.in_name.size() - ext.size());
        if (!ext.empty()) {
            stem += ".";
        }
        const bool con = fileExists(outName("_cn.csv"));
        const bool ham = fileExists(outName("_hn.csv"));
        const bool dup = fileExists(stem + "dup");
        setEnabled("mnuDisp_con_n_new", con);
        setEnabled("contest_n", con);
        setEnabled("mnuDisp_ham_n_new", ham);
        setEnabled("hamlog_n", ham);
        setEnabled("mnuDisp_dup", dup);
        setEnabled("＊．ｄｕｐ", dup);
    }
    if (m_facts.f_type == "zlo") {
        setEnabled("txtYYYY", false);
    }

    setText("txtRmks1", m_options.value("txtRmks1"));
    setText("txtRmks2", m_options.value("txtRmks2"));

    std::string history = m_facts.historyFileName;
    if (text::trim(history).empty()) {
        if (!m_facts.historyFileExists && m_facts.dialogs != nullptr) {
            m_facts.dialogs->message(
                "", m_facts.historyFilePath + " が有りません！ 環境設定を確認して下さい。",
                base::Dialogs::Icon::Exclamation);
        }
        history = "Hamlog.hdb";
    }
    setCaption("Option01(0)", history);
}

void OptionModel::nameMasCount()
{
    const std::string& dir = m_options.value("name_mas_dir");
    int count = 0;
    if (!dir.empty() && dir != kNotUsed) {
        const std::filesystem::path folder(dir);
        if (fileExists(folder / "name_mas.txt")) {
            ++count;
        }
        for (int i = 1; i <= 7; ++i) {
            if (fileExists(folder / ("name_mas" + std::to_string(i) + ".txt"))) {
                ++count;
            }
        }
    }
    if (count == 1) {
        setCaption("Frame10", "name_mas ．txt のみ");
    } else if (count > 1) {
        setCaption("Frame10", "name_mas " + std::to_string(count - 1) + " ．txt　まであり");
    }
}

void OptionModel::fillDates()
{
    if (m_options.value("Start_date").empty()) {
        store("Start_date", "19600101");
    }
    const std::string& end = m_options.value("End_date");
    if (end.empty()) {
        const std::string t = todayText();
        store("End_date", t.substr(0, 4) + "/" + t.substr(4, 2) + "/" + t.substr(6, 2));
    } else {
        store("End_date", text::replaceAll(end, "-", "/"));
    }
    std::string interval = m_options.value("GetMng_Interval");
    if (interval.empty()) {
        interval = "2";
        store("GetMng_Interval", interval);
    }
    setText("Combo1", interval);
}

void OptionModel::buildPeriodAndTitle()
{
    const std::string& start = m_options.value("Start_date");
    const std::string& end = m_options.value("End_date");
    setToolTip("cmdDate", settings::periodToolTip(start, end));
    const std::string period = settings::periodText(start, end);
    setCaption("periodText", period);
    m_title = settings::mainWindowTitle(settings::kProgramVersion, period);
    setCaption("Vornhale", m_title);
}

void OptionModel::Form_Load_3()
{
    // 1. An empty key turns the band tick on, in black.
    const std::string& check16 = m_options.value("Check16");
    if (check16.empty()) {
        setOn("Check16", true);
        store("Check16", "1");
        setColour("Check16", Colour::Black);
    } else if (check16 == "0") {
        setOn("Check16", false);
        setColour("Check16", Colour::Black);
    }

    // 2. The rule procedures, in their fixed order.
    Op2_Chk_();
    Op2_Chk();
    Op02_Chk();
    Op04_Chk();
    Op08_Chk();
    setColour("Check04", tick("Check04") ? Colour::Blue : Colour::Black);
    setColour("Check05", tick("Check05") ? Colour::Blue : Colour::Black);
    Op3_Chk();
    Op4_Chk();
    Op4_Chk_();
    Op05_Chk_();
    Op05_Chk();
    Op6_Chk();
    Op7_Chk();
    Check5_Click();
    Op10_Chk();
    Check18_Click();
    Check9_Click();
    Check21_Click();
    Check22_Click();
    Check23_Click();
    for (std::string_view name : {"Check25", "Check26", "Check27", "Check28", "Check29"}) {
        setColour(name, tick(name) ? Colour::Blue : Colour::Black);
    }

    // 3. The layout.
    if (m_layout != nullptr) {
        if (!m_options.value("Rmks1_cfg").empty() && !m_options.value("Rmks2_cfg").empty()) {
            m_layout->Disp_Rmks_cfg_bas();
        }
        m_layout->Set_Rmks_Len();
    }

    // 4. The start tabs.
    m_startTabSecond = m_options.member("disp_top_SSTab");
    static constexpr std::string_view tabTicks[] = {"Check7", "Check8", "Check11"};
    for (int i = 0; i < 3; ++i) {
        setOn(tabTicks[i], i == m_startTabSecond);
        setColour(tabTicks[i], i == m_startTabSecond ? Colour::Blue : Colour::Black);
    }
    m_startTabFirst = m_options.member("Option5");

    // 5. Ticks read once more from their keys.
    setTickFromKey("Check15");
    setTickFromKey("Check6");
    if (tick("Check6")) {
        changeMember("Option7", 1);
    }
    for (std::string_view name : {"Check12", "Check14", "Check19"}) {
        if (m_options.value(name).empty()) {
            setOn(name, false);
            setColour(name, Colour::Black);
        }
    }
    setOn("mnuMake_a2t", m_options.value("Make_a2t") == "1");
    setOn("mnuMake_t2a", m_options.value("Make_t2a") == "1");

    // 6. Dates and the search interval.
    fillDates();

    // 7. The name masters and the period.
    nameMasCount();

    // 8. Title; the working copy is written.
    buildPeriodAndTitle();
    store("GetMng_Interval", text("Combo1"));
    ini_write_old();

    // 9.
    inetFlagRule();
    setEnabled("cmdDisp_Henkan_Result", false);
    showMember("Option01", 0);
    colourGroup("Option01");
    store("Option01", "0");
    setOn("Check14", true);
    store("Check14", "1");
    setColour("Check14", Colour::Blue);
    setEnabled("Command1(1)", false);
    setEnabled("mnuQSOBank", fileExists(m_facts.drive_path / "zlog_1.txt"));

    // 10.
    setToolTip("Frame15", m_options.value("qth_mas_dir"));
    const std::string saved = m_options.value("Zone_moji_save");
    if (!text::trim(saved).empty()) {
        setText("txtZone_moji", saved);
        store("Zone_moji", saved);
    }
}

} // namespace vornhale::session
