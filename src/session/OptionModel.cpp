#include "session/OptionModel.h"
#include "readers/ContestTags.h"

#include "settings/PeriodModel.h"

#include "settings/SettingsFiles.h"
#include "text/Chars.h"
#include "text/Utf8.h"

#include <system_error>

namespace vornhale::session {
namespace {

using base::Colour;

constexpr std::string_view kStartButtonTool = "変換";
constexpr std::string_view kStateItem = "州名";
constexpr std::string_view kStateClash = "州名 又は Province のどちらかにして下さい。";
constexpr std::string_view kWebOnlyFile = "MNG ファイルのみ有効";
constexpr std::string_view kNotUsed = "使用しない";


bool hasSeparator(std::string_view path)
{
    return path.find('/') != std::string_view::npos || path.find('\\') != std::string_view::npos;
}

bool isStartTabTick(std::string_view name)
{
    return name == "Check7" || name == "Check8" || name == "Check11";
}

// Folders compare as normal paths, a trailing separator or none.
bool sameFolder(const std::filesystem::path& a, const std::filesystem::path& b)
{
    auto norm = [](const std::filesystem::path& p) {
        std::string s = p.lexically_normal().generic_string();
        while (s.size() > 1 && s.back() == '/') {
            s.pop_back();
        }
        return s;
    };
    return norm(a) == norm(b);
}

bool fileExists(const std::filesystem::path& p)
{
    std::error_code ec;
    return !p.empty() && std::filesystem::is_regular_file(p, ec);
}

} // namespace

OptionModel::OptionModel(Options& options, SettingsFiles* files, OptionFacts facts,
                         LayoutHooks* layout)
    : m_options(options), m_files(files), m_facts(std::move(facts)), m_layout(layout)
{
    for (const OptionEntry& e : OptionCatalog::all()) {
        ControlState& c = m_controls[e.controlName()];
        c.caption = std::string(e.caption);
        c.toolTip = std::string(e.toolTip);
    }
    m_storeSubscription = m_options.subscribe(
        [this](std::string_view key, const std::string& value) { storeChanged(key, value); });
}

OptionModel::~OptionModel()
{
    m_options.unsubscribe(m_storeSubscription);
}

// ---- Control state ------------------------------------------------------------------------

const ControlState& OptionModel::control(std::string_view name) const
{
    static const ControlState none;
    const auto it = m_controls.find(name);
    return it == m_controls.end() ? none : it->second;
}

int OptionModel::member(std::string_view group) const
{
    for (const OptionEntry* e : OptionCatalog::members(group)) {
        if (control(e->controlName()).on) {
            return e->member;
        }
    }
    return -1;
}

ControlState& OptionModel::mut(std::string_view name)
{
    const auto it = m_controls.find(name);
    if (it != m_controls.end()) {
        return it->second;
    }
    return m_controls.emplace(std::string(name), ControlState{}).first->second;
}

void OptionModel::notify(std::string_view name)
{
    // A listener may unsubscribe while it is called: walk a copy.
    const auto listeners = m_listeners;
    for (const auto& [id, listener] : listeners) {
        listener(name);
    }
}

void OptionModel::setOn(std::string_view name, bool on)
{
    ControlState& c = mut(name);
    if (c.on != on) {
        c.on = on;
        notify(name);
    }
}

void OptionModel::setEnabled(std::string_view name, bool enabled)
{
    ControlState& c = mut(name);
    if (c.enabled != enabled) {
        c.enabled = enabled;
        notify(name);
    }
}

void OptionModel::setColour(std::string_view name, Colour colour)
{
    ControlState& c = mut(name);
    if (c.colour != colour) {
        c.colour = colour;
        notify(name);
    }
}

void OptionModel::setCaption(std::string_view name, std::string_view caption)
{
    ControlState& c = mut(name);
    if (c.caption != caption) {
        c.caption = std::string(caption);
        notify(name);
    }
}

void OptionModel::setToolTip(std::string_view name, std::string_view toolTip)
{
    ControlState& c = mut(name);
    if (c.toolTip != toolTip) {
        c.toolTip = std::string(toolTip);
        notify(name);
    }
}

void OptionModel::setText(std::string_view name, std::string_view text)
{
    ControlState& c = mut(name);
    if (c.text != text) {
        c.text = std::string(text);
        notify(name);
    }
}

void OptionModel::setLabel(std::string_view name, std::string_view caption, Colour colour)
{
    setCaption(name, caption);
    setColour(name, colour);
}

void OptionModel::setStatus(std::string_view text, Colour colour)
{
    setLabel("lblShori", text, colour);
}

int OptionModel::subscribe(Listener listener)
{
    const int id = m_nextListener++;
    m_listeners.emplace(id, std::move(listener));
    return id;
}

void OptionModel::unsubscribe(int id)
{
    m_listeners.erase(id);
}

// ---- Stored values ------------------------------------------------------------------------

std::string OptionModel::storageName(std::string_view controlName) const
{
    const OptionEntry* e = OptionCatalog::find(controlName);
    if (e == nullptr) {
        const auto members = OptionCatalog::members(controlName);
        if (!members.empty()) {
            e = members.front();
        }
    }
    if (e != nullptr && e->stored()) {
        return std::string(e->key);
    }
    // Options without a key live in memory under their own name.
    return std::string(e != nullptr ? e->name : controlName);
}

const std::string& OptionModel::stored(std::string_view controlName) const
{
    return m_options.value(storageName(controlName));
}

void OptionModel::store(std::string_view key, std::string value)
{
    if (m_options.value(key) != value) {
        m_storing = true;
        m_options.set(key, std::move(value));
        m_storing = false;
        notify(key);
    }
}

void OptionModel::storeChanged(std::string_view key, const std::string& value)
{
    if (m_storing) {
        return;
    }
    for (const OptionEntry& e : OptionCatalog::all()) {
        if (!e.stored() || text::upper(e.key) != text::upper(key)) {
            continue;
        }
        const std::string name = e.controlName();
        switch (e.kind) {
        case OptionKind::Tick:
            setOn(name, value == "1");
            setColour(name, value == "1" ? Colour::Blue : Colour::Black);
            break;
        case OptionKind::MenuTick:
            setOn(name, value == "1");
            break;
        case OptionKind::GroupMember:
            if (e.member == 0) {
                setGroupFromKey(e.name);
            }
            break;
        case OptionKind::Text:
            setText(name, value);
            break;
        case OptionKind::Button:
            break;
        }
    }
    notify(key);
}

// ---- Settings files -----------------------------------------------------------------------

void OptionModel::callFiles(const char* what, void (SettingsFiles::*call)())
{
    m_fileCalls.emplace_back(what);
    if (m_files != nullptr) {
        (m_files->*call)();
    }
}

void OptionModel::ini_write_new()
{
    callFiles("ini_write_new", &SettingsFiles::ini_write_new);
}
void OptionModel::ini_write_old()
{
    callFiles("ini_write_old", &SettingsFiles::ini_write_old);
}
void OptionModel::ini_write_cfg()
{
    callFiles("ini_write_cfg", &SettingsFiles::ini_write_cfg);
}
void OptionModel::ini_read_new()
{
    callFiles("ini_read_new", &SettingsFiles::ini_read_new);
}
void OptionModel::ini_read_cfg()
{
    callFiles("ini_read_cfg", &SettingsFiles::ini_read_cfg);
}
void OptionModel::ini_read_old()
{
    callFiles("ini_read_old", &SettingsFiles::ini_read_old);
}
void OptionModel::ini_write_zone_moji()
{
    callFiles("ini_write_zone_moji", &SettingsFiles::ini_write_zone_moji);
}

// ---- Helpers ------------------------------------------------------------------------------

bool OptionModel::hasInput() const
{
    return hasSeparator(m_facts.in_name);
}

std::string OptionModel::todayText() const
{
    return m_facts.today.empty() ? settings::dateDigits(settings::systemToday()) : m_facts.today;
}

void OptionModel::showMember(std::string_view group, int index)
{
    for (const OptionEntry* e : OptionCatalog::members(group)) {
        setOn(e->controlName(), e->member == index);
    }
}

void OptionModel::colourGroup(std::string_view group)
{
    for (const OptionEntry* e : OptionCatalog::members(group)) {
        const std::string name = e->controlName();
        setColour(name, control(name).on ? Colour::Blue : Colour::Black);
    }
}

void OptionModel::enableGroup(std::string_view group, bool enabled)
{
    for (const OptionEntry* e : OptionCatalog::members(group)) {
        setEnabled(e->controlName(), enabled);
    }
}

void OptionModel::setTickFromKey(std::string_view name)
{
    // The tick follows its key; the rule runs as for a change, but the key itself is left
    // as it stands, so an empty key stays empty for the load to judge.
    const bool on = stored(name) == "1";
    setOn(name, on);
    setColour(name, on ? Colour::Blue : Colour::Black);
    tickRule(name);
}

void OptionModel::setGroupFromKey(std::string_view group)
{
    showMember(group, m_options.member(storageName(group)));
    colourGroup(group);
}

// ---- Changes ------------------------------------------------------------------------------

void OptionModel::changeTick(std::string_view name, bool on)
{
    setOn(name, on);
    const OptionEntry* e = OptionCatalog::find(name);
    if (!isStartTabTick(name)) {
        store(storageName(name), on ? "1" : "0");
    }
    if (e == nullptr || e->kind != OptionKind::MenuTick) {
        setColour(name, on ? Colour::Blue : Colour::Black);
    }
    tickRule(name);
}

void OptionModel::changeMember(std::string_view group, int index)
{
    showMember(group, index);
    store(storageName(group), std::to_string(index));
    colourGroup(group);
    groupRule(group);
}

void OptionModel::tickRule(std::string_view name)
{
    if (name == "Check3" || name == "Check4") {
        Check3_Click(name);
    } else if (isStartTabTick(name)) {
        startTabTick(name);
    } else if (name == "Check14") {
        Check14_Click();
    } else if (name == "Check6") {
        Check6_Click();
    } else if (name == "Check09") {
        Check09_Click();
    } else if (name == "Check18") {
        Check18_Click();
    } else if (name == "Check23") {
        Check23_Click();
    } else if (name == "Check5") {
        Check5_Click();
    } else if (name == "Check02") {
        // Only the look of the operator box follows the tick; the view repaints it.
        notify("txtOp_name");
    } else if (name == "Check21") {
        Check21_Click();
    } else if (name == "Check16") {
        ini_write_new();
        ini_write_old();
    } else if (name == "mnuMake_a2t" || name == "mnuMake_t2a") {
        ini_write_old();
    }
}

void OptionModel::groupRule(std::string_view group)
{
    if (group == "Option2") {
        Op2_Chk();
        // A change of the input zone resets the conversion, as a change of Option05.
        if (!m_loading) {
            changeMember("Option05", 0);
        }
    } else if (group == "Option08") {
        Op08_Chk();
    } else if (group == "Option04") {
        Op04_Chk();
        ini_write_new();
    } else if (group == "Option3") {
        Op3_Chk();
    } else if (group == "Option4") {
        Op4_Chk();
    } else if (group == "Option6") {
        Op6_Chk();
    } else if (group == "Option05") {
        Op05_Chk();
        ini_write_old();
        ini_write_new();
    } else if (group == "Option10") {
        Op10_Chk();
    } else if (group == "Option5") {
        m_startTabFirst = member("Option5");
    }
}

// ---- Tick rules ---------------------------------------------------------------------------

void OptionModel::Check3_Click(std::string_view name)
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

void OptionModel::Label29_text()
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
        Label29_text();
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
    Label29_text();
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

// ---- User actions -------------------------------------------------------------------------

void OptionModel::clickTick(std::string_view name)
{
    const OptionEntry* e = OptionCatalog::find(name);
    if (e == nullptr || (e->kind != OptionKind::Tick && e->kind != OptionKind::MenuTick) ||
        !enabled(name)) {
        return;
    }
    setStatus("");
    changeTick(name, !tick(name));
}

void OptionModel::setTick(std::string_view name, bool on)
{
    if (tick(name) != on) {
        clickTick(name);
    }
}

void OptionModel::chooseMember(std::string_view group, int index)
{
    const OptionEntry* e = OptionCatalog::find(group, index);
    if (e == nullptr || e->kind != OptionKind::GroupMember) {
        return;
    }
    const std::string name = e->controlName();
    if (!enabled(name) || tick(name)) {
        return;
    }
    setStatus("");
    changeMember(e->name, index);
}

void OptionModel::editText(std::string_view name, std::string_view value)
{
    const OptionEntry* e = OptionCatalog::find(name);
    if (e == nullptr || e->kind != OptionKind::Text || !enabled(name)) {
        return;
    }
    setStatus("");
    setText(name, value);
    textRule(name);
}

bool OptionModel::clickButton(std::string_view name)
{
    struct Action
    {
        std::string_view name;
        void (OptionModel::*run)();
    };
    static constexpr Action actions[] = {
        {"cmdNG", &OptionModel::cmdNG_},
        {"cmdNow", &OptionModel::cmdNow_Click},
        {"cmdDisp", &OptionModel::cmdDisp_Click},
        {"cmdDel", &OptionModel::cmdDel_Click},
        {"cmdZone_moji_save", &OptionModel::cmdZone_moji_save_Click},
        {"cmdDelProv", &OptionModel::cmdDelProv_Click},
        {"makeIni", &OptionModel::makeIni_Click},
        {"mnuMake_a2t", &OptionModel::mnuMake_a2t_Click},
        {"mnuMake_t2a", &OptionModel::mnuMake_t2a_Click},
    };
    if (name == "ini 作成") {
        setStatus("");
        makeIni_Click();
        setStatus("　ini 作成完了");
        return true;
    }
    for (const Action& a : actions) {
        if (a.name == name) {
            if (!enabled(name)) {
                return true;
            }
            setStatus("");
            (this->*a.run)();
            return true;
        }
    }
    return false;
}

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
