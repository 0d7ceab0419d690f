#include "settings/Options.h"

#include "settings/OptionSchema.h"
#include "settings/PeriodModel.h"
#include "settings/SettingsFiles.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace vornhale::settings {
namespace {

// Text boxes whose text is a stored key.
constexpr std::pair<std::string_view, std::string_view> kAliases[] = {
    {"txtYYYY", "YYYY"},           {"txtQSL_Q", "QSL_Q"},
    {"txtQSL_S", "QSL_S"},         {"txtNo_qsl_cty", "No_qsl_cty"},
    {"txtZone_moji", "Zone_moji"}, {"txtProv_moji", "Prov_moji"},
};


} // namespace

bool Options::NoCase::operator()(std::string_view a, std::string_view b) const
{
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) <
               std::tolower(static_cast<unsigned char>(y));
    });
}

std::string_view Options::canonical(std::string_view name)
{
    if (name.size() < 3 || (name[0] != 't' && name[0] != 'T')) {
        return name;
    }
    for (const auto& [alias, key] : kAliases) {
        if (!NoCase{}(alias, name) && !NoCase{}(name, alias)) {
            return key;
        }
    }
    return name;
}

const std::string& Options::value(std::string_view name) const
{
    static const std::string empty;
    const auto it = m_values.find(canonical(name));
    return it == m_values.end() ? empty : it->second;
}

Options::Options(const Options& other) : m_values(other.m_values) {}

Options& Options::operator=(const Options& other)
{
    m_values = other.m_values;
    return *this;
}

void Options::replaceForRun(std::string_view name, std::string value)
{
    const std::string_view key = canonical(name);
    const auto it = m_values.find(key);
    if (it != m_values.end()) {
        it->second = std::move(value);
    } else {
        m_values.emplace(std::string(key), std::move(value));
    }
}

void Options::set(std::string_view name, std::string value)
{
    const std::string_view key = canonical(name);
    auto it = m_values.find(key);
    if (it != m_values.end()) {
        if (it->second == value) {
            return;
        }
        it->second = std::move(value);
    } else {
        it = m_values.emplace(std::string(key), std::move(value)).first;
    }
    // A listener may subscribe or unsubscribe while it is told; it works on a copy.
    const auto listeners = m_listeners;
    for (const auto& [id, listener] : listeners) {
        listener(it->first, it->second);
    }
    if (m_forward) {
        m_forward(it->first, it->second);
    }
}

int Options::subscribe(Listener listener)
{
    const int id = m_nextListener++;
    m_listeners.emplace_back(id, std::move(listener));
    return id;
}

void Options::unsubscribe(int id)
{
    std::erase_if(m_listeners, [id](const auto& entry) { return entry.first == id; });
}

Options Options::forRun(Listener forward) const
{
    Options copy(*this);
    copy.m_forward = std::move(forward);
    return copy;
}

bool Options::tick(std::string_view name) const
{
    return value(name) == "1";
}

int Options::member(std::string_view name) const
{
    const std::string& v = value(name);
    int index = 0;
    const char* begin = v.data();
    while (begin < v.data() + v.size() && *begin == ' ') {
        ++begin;
    }
    std::from_chars(begin, v.data() + v.size(), index);
    return index;
}

Options Options::defaults()
{
    Options o;
    // The environment of a first start with no zLog or HAMLOG folder found.
    for (const SchemaKey& key : optionSchema()) {
        if (key.file != SettingsFileId::Environment) {
            continue;
        }
        if (key.kind == ValueKind::Stamp) {
            o.set(key.key, std::string(kProgramVersion));
        } else {
            o.set(key.key, defaultValueOf(key, ""));
        }
    }
    for (auto& [key, value] : SettingsFiles::optionDefaults(dateDigits(systemToday()))) {
        o.set(key, std::move(value));
    }
    // An empty band tick turns on at the load; the texts that have no key start empty.
    o.set("Check16", "1");
    o.set("Option01", "0");
    for (const char* text : {"txtOp_name", "txtRmks1", "txtRmks2"}) {
        o.set(text, "");
    }
    return o;
}

} // namespace vornhale::settings
