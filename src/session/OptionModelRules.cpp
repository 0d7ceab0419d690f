// The change rules of ticks, groups, texts and buttons: each control name has its rule.

#include "session/OptionModel.h"

#include "readers/ContestTags.h"
#include "session/OptionModelShared.h"
#include "settings/PeriodModel.h"
#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Utf8.h"

#include <system_error>

namespace vornhale::session {

using base::Colour;
using namespace optionrules;

// ---- Tick rules ---------------------------------------------------------------------------

void OptionModel::tickRule(std::string_view name)
{
    using Rule = void (*)(OptionModel&, std::string_view);
    static constexpr std::pair<std::string_view, Rule> kRules[] = {
        {"Check3", [](OptionModel& m, std::string_view n) { m.noQslRewriteTick(n); }},
        {"Check4", [](OptionModel& m, std::string_view n) { m.noQslRewriteTick(n); }},
        {"Check7", [](OptionModel& m, std::string_view n) { m.startTabTick(n); }},
        {"Check8", [](OptionModel& m, std::string_view n) { m.startTabTick(n); }},
        {"Check11", [](OptionModel& m, std::string_view n) { m.startTabTick(n); }},
        {"Check14", [](OptionModel& m, std::string_view) { m.Check14_Click(); }},
        {"Check6", [](OptionModel& m, std::string_view) { m.Check6_Click(); }},
        {"Check09", [](OptionModel& m, std::string_view) { m.Check09_Click(); }},
        {"Check18", [](OptionModel& m, std::string_view) { m.Check18_Click(); }},
        {"Check23", [](OptionModel& m, std::string_view) { m.Check23_Click(); }},
        {"Check5", [](OptionModel& m, std::string_view) { m.Check5_Click(); }},
        // Only the look of the operator box follows the tick; the view repaints it.
        {"Check02", [](OptionModel& m, std::string_view) { m.notify("txtOp_name"); }},
        {"Check21", [](OptionModel& m, std::string_view) { m.Check21_Click(); }},
        {"Check16",
         [](OptionModel& m, std::string_view) {
             m.ini_write_new();
             m.ini_write_old();
         }},
        {"mnuMake_a2t", [](OptionModel& m, std::string_view) { m.ini_write_old(); }},
        {"mnuMake_t2a", [](OptionModel& m, std::string_view) { m.ini_write_old(); }},
    };
    for (const auto& [tick, rule] : kRules) {
        if (tick == name) {
            rule(*this, name);
            return;
        }
    }
}

void OptionModel::groupRule(std::string_view group)
{
    using Rule = void (*)(OptionModel&);
    static constexpr std::pair<std::string_view, Rule> kRules[] = {
        {"Option2",
         [](OptionModel& m) {
             m.Op2_Chk();
             // A change of the input zone resets the conversion, as a change of Option05.
             if (!m.m_loading) {
                 m.changeMember("Option05", 0);
             }
         }},
        {"Option08", [](OptionModel& m) { m.Op08_Chk(); }},
        {"Option04",
         [](OptionModel& m) {
             m.Op04_Chk();
             m.ini_write_new();
         }},
        {"Option3", [](OptionModel& m) { m.Op3_Chk(); }},
        {"Option4", [](OptionModel& m) { m.Op4_Chk(); }},
        {"Option6", [](OptionModel& m) { m.Op6_Chk(); }},
        {"Option05",
         [](OptionModel& m) {
             m.Op05_Chk();
             m.ini_write_old();
             m.ini_write_new();
         }},
        {"Option10", [](OptionModel& m) { m.Op10_Chk(); }},
        {"Option5", [](OptionModel& m) { m.m_startTabFirst = m.member("Option5"); }},
    };
    for (const auto& [name, rule] : kRules) {
        if (name == group) {
            rule(*this);
            return;
        }
    }
}

void OptionModel::noQslRewriteTick(std::string_view name)
{
    const std::string other = name == "Check3" ? "Check4" : "Check3";
    if (tick(name) && tick(other)) {
        setOn(other, false);
        store(other, "0");
        setColour(other, Colour::Black);
    }
    ini_write_new();
}

void OptionModel::startTabTick(std::string_view name)
{
    if (!tick(name)) {
        return;
    }
    static constexpr std::string_view ticks[] = {"Check7", "Check8", "Check11"};
    for (int i = 0; i < 3; ++i) {
        if (ticks[i] == name) {
            store("disp_top_SSTab", std::to_string(i));
            m_startTabSecond = i;
        } else {
            setOn(ticks[i], false);
            setColour(ticks[i], Colour::Black);
        }
    }
    // The result tab's tick clears the manager tick as well: kept as it always was.
    if (name == "Check11") {
        setOn("Check9", false);
        store("Check9", "0");
        setColour("Check9", Colour::Black);
    }
}

void OptionModel::Check14_Click()
{
    setOn("Check14", true);
    store("Check14", "1");
    setColour("Check14", Colour::Blue);
}

void OptionModel::Check6_Click()
{
    if (!tick("Check6")) {
        changeMember("Option7", 1);
    }
}

void OptionModel::Check09_Click()
{
    if (tick("Check09")) {
        cmdNG_();
        setEnabled("cmdNG", true);
        store("No_qsl_cty", text("txtNo_qsl_cty"));
    } else {
        setEnabled("cmdNG", false);
        setCaption("Label3", "");
    }
}

void OptionModel::showManagerOrder()
{
    static constexpr std::string_view orders[] = {"WEB検索のみを使用する", "MNG ﾌｧｲﾙ 優先、WEB補完",
                                                  "WEB優先、MNG ﾌｧｲﾙ 補完"};
    const int m = member("Option10");
    setLabel("Label29", m >= 0 && m <= 2 ? orders[m] : std::string_view{}, Colour::DarkRed);
}

void OptionModel::Check18_Click()
{
    const bool on = tick("Check18");
    setColour("Check18", on ? Colour::Blue : Colour::Black);
    if (on) {
        enableGroup("Option10", true);
        setEnabled("Check22", true);
        setCaption("Label26", "Web サーチして下記条件");
        if (tick("Check23")) {
            setOn("Check22", true);
            store("Check22", "1");
            setColour("Check22", Colour::Blue);
        }
        showManagerOrder();
    } else {
        enableGroup("Option10", false);
        setOn("Check22", false);
        store("Check22", "0");
        setColour("Check22", Colour::Black);
        setEnabled("Check22", false);
        setCaption("Label26", kWebOnlyFile);
        setLabel("Label29", kWebOnlyFile, Colour::DarkRed);
    }
}

void OptionModel::Check23_Click()
{
    setColour("Check23", tick("Check23") ? Colour::Blue : Colour::Black);
    if (tick("Check23") && tick("Check18")) {
        setOn("Check22", true);
        store("Check22", "1");
        setColour("Check22", Colour::Blue);
    }
}

void OptionModel::Check22_Click()
{
    setColour("Check22", tick("Check22") ? Colour::Blue : Colour::Black);
}

void OptionModel::Check9_Click()
{
    setColour("Check9", tick("Check9") ? Colour::Blue : Colour::Black);
}

void OptionModel::Check21_Click()
{
    m_reportFlag = tick("Check21");
    setColour("Check21", m_reportFlag ? Colour::Blue : Colour::Black);
}

void OptionModel::inetFlagRule()
{
    const bool ok = m_options.value("inet_flag") == "OK";
    if (!ok) {
        if (tick("Check18")) {
            changeTick("Check18", false);
        } else {
            store("Check18", "0");
        }
        setEnabled("Check18", false);
        setColour("Check18", Colour::Black);
        setEnabled("mnuGet_MNG", false);
        setEnabled("mnuDownload", false);
        return;
    }
    setEnabled("Check18", true);
    setEnabled("mnuGet_MNG", true);
    setEnabled("mnuDownload", true);
    if (m_facts.Form_Load_GetMng) {
        m_facts.Form_Load_GetMng();
    }
}

// ---- Group rules --------------------------------------------------------------------------

void OptionModel::Op2_Chk_()
{
    setGroupFromKey("Option2");
}

void OptionModel::Op2_Chk()
{
    colourGroup("Option2");
    // The conversion goes back to none; only a change by the user stores it.
    showMember("Option05", 0);
    colourGroup("Option05");
    const bool utc = member("Option2") != 1;
    setEnabled("Option05(1)", utc);
    setEnabled("Option05(3)", utc);
    setEnabled("Option05(2)", !utc);
}

void OptionModel::Op02_Chk()
{
    colourGroup("Option02");
}

void OptionModel::Op04_Chk()
{
    colourGroup("Option04");
    static constexpr std::string_view history[] = {"Check04", "Check05", "Check3", "Check4"};
    if (member("Option04") == 0) {
        setEnabled("Option01(0)", false);
        for (std::string_view name : history) {
            setEnabled(name, false);
        }
        return;
    }
    for (std::string_view name : history) {
        setEnabled(name, true);
    }
    setEnabled("Label27", true);
    if (m_facts.historyFileExists) {
        setEnabled("Option01(0)", true);
    } else if (m_facts.lblH_r == "無し") {
        setEnabled("Option01(0)", false);
        if (m_facts.disp_err_op04) {
            m_facts.disp_err_op04();
        }
    }
}

void OptionModel::Op08_Chk()
{
    colourGroup("Option08");
    if (member("Option08") == 0) {
        setEnabled("Option02(4)", false);
        if (tick("Option02(4)")) {
            changeMember("Option02", 0);
        }
    } else {
        setEnabled("Option02(4)", true);
    }
}

void OptionModel::Op3_Chk()
{
    colourGroup("Option3");
}

void OptionModel::Op4_Chk()
{
    colourGroup("Option4");
    const bool free = member("Option4") == 3 || member("Option4") == 4;
    setEnabled("cmdDelProv", free);
    setEnabled("txtProv_moji", free);
}

void OptionModel::Op4_Chk_()
{
    setGroupFromKey("Option4");
    Op4_Chk();
}

void OptionModel::Op05_Chk_()
{
    setGroupFromKey("Option05");
}

void OptionModel::Op05_Chk()
{
    colourGroup("Option05");
}

void OptionModel::Op6_Chk()
{
    colourGroup("Option6");
    const int m = member("Option6");
    static constexpr std::string_view quoted[] = {"'Z'", "'CQ = '", "'ITU = '"};
    if (m >= 0 && m <= 2) {
        setCaption("Label10", quoted[m]);
    } else if (m == 3) {
        const std::string& box = text("txtZone_moji");
        setCaption("Label10", text::trim(box).empty() ? std::string() : "'" + box + "'");
    }
    const bool free = m == 3;
    setEnabled("txtZone_moji", free);
    setEnabled("cmdDisp", free);
    setEnabled("cmdDel", free);
}

void OptionModel::Op7_Chk()
{
    colourGroup("Option7");
}

void OptionModel::Op10_Chk()
{
    colourGroup("Option10");
    showManagerOrder();
}

// ---- Texts and buttons --------------------------------------------------------------------

void OptionModel::textRule(std::string_view name)
{
    const std::string& t = text(name);
    if (name == "txtQSL_Q" || name == "txtQSL_S") {
        const std::string first = text::left(t, 1);
        setText(name, first);
        store(storageName(name), first);
        ini_write_old();
        ini_write_new();
    } else if (name == "txtYYYY") {
        const std::string year = text::left(t, 4);
        setText(name, year);
        store("YYYY", year);
        ini_write_old();
    } else if (name == "Combo1" || name == "txtRmks1" || name == "txtRmks2" ||
               name == "txtZone_moji") {
        store(storageName(name), t);
        if (name == "txtZone_moji") {
            Op6_Chk();
        }
        ini_write_old();
    } else if (name == "txtNo_qsl_cty") {
        store("No_qsl_cty", text::upper(t));
        if (text::trim(t).empty()) {
            setCaption("Label3", "");
        }
    } else {
        store(storageName(name), t);
    }
}

void OptionModel::cmdNG_()
{
    const std::string t = text("txtNo_qsl_cty");
    store("No_qsl_cty", t);
    setCaption("Label3", "");
    if (tick("Check09") && !text::trim(t).empty()) {
        std::string unknown;
        for (const std::string& piece : text::split(t, ",")) {
            const std::string name = text::upper(text::trim(piece));
            if (name.empty()) {
                continue;
            }
            if (!m_facts.knownEntity || !m_facts.knownEntity(name)) {
                unknown += name + " , ";
            }
        }
        if (!unknown.empty()) {
            setCaption("Label3", "無 : " + unknown);
        }
    }
    const std::string up = text::upper(t);
    setText("txtNo_qsl_cty", up);
    store("No_qsl_cty", up);
    ini_write_old();
}

void OptionModel::cmdNow_Click()
{
    setText("txtYYYY", todayText().substr(0, 4));
    textRule("txtYYYY");
}

void OptionModel::cmdCount_Click()
{
    setStatus("name_mas．txt の件数をカウント中 !!");
    const std::filesystem::path file =
        std::filesystem::path(m_options.value("name_mas_dir")) / "name_mas.txt";
    const long lines = fileExists(file) ? text::Count_lines(file) : 0;
    if (lines == 0) {
        setStatus(file.string() + " が有りません。", base::Colour::Red);
        return;
    }
    setStatus(std::to_string(lines - 2) + "　件");
}

void OptionModel::cmdDisp_Click()
{
    setCaption("Label10", "'" + text("txtZone_moji") + "'");
}

void OptionModel::cmdDel_Click()
{
    setCaption("Label10", "");
    setText("txtZone_moji", "");
    store("Zone_moji", "");
    ini_write_old();
    store("Zone_moji_save", "");
    ini_write_zone_moji();
}

void OptionModel::cmdZone_moji_save_Click()
{
    store("Zone_moji_save", text("txtZone_moji"));
    ini_write_zone_moji();
}

void OptionModel::cmdDelProv_Click()
{
    setText("txtProv_moji", "");
    store("Prov_moji", "");
}

void OptionModel::makeIni_Click()
{
    ini_write_new();
    setStatus("ini 作成完了");
}

void OptionModel::mnuMake_a2t_Click()
{
    changeTick("mnuMake_a2t", !tick("mnuMake_a2t"));
}

void OptionModel::mnuMake_t2a_Click()
{
    changeTick("mnuMake_t2a", !tick("mnuMake_t2a"));
}

} // namespace vornhale::session
