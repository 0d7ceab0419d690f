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
        // An option without a key lives in memory under its own name (the open's REF tick).
        const std::string_view storedAs = e.stored() ? e.key : e.name;
        if (text::upper(storedAs) != text::upper(key)) {
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
        {"cmdCount", &OptionModel::cmdCount_Click},
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

} // namespace vornhale::session
