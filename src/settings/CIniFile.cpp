#include "settings/CIniFile.h"

#include "settings/ProfileFile.h"
#include "text/Chars.h"

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace vornhale::settings {
namespace {

constexpr char kSeparator = '\0';

std::string_view trimSpace(std::string_view s)
{
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) {
        s.remove_prefix(1);
    }
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) {
        s.remove_suffix(1);
    }
    return s;
}

// Conversions to whole numbers round half to even.
bool fits16(double value)
{
    const double rounded = std::nearbyint(value);
    return rounded >= -32768.0 && rounded <= 32767.0;
}

std::optional<float> toSingle(std::string_view text)
{
    const auto value = text::toNumber(text);
    if (!value || std::fabs(*value) > FLT_MAX) {
        return std::nullopt;
    }
    return static_cast<float>(*value);
}

std::string_view keyOf(const std::string& entry)
{
    return std::string_view(entry).substr(0, entry.find(kSeparator));
}

std::string_view valueOf(const std::string& entry)
{
    const auto sep = entry.find(kSeparator);
    return sep == std::string::npos ? std::string_view() : std::string_view(entry).substr(sep + 1);
}

} // namespace

bool CIniFile::Load(const std::filesystem::path& FileName)
{
    m_path = FileName;
    m_sections.clear();
    m_keys.clear();
    const ProfileFile file(m_path);
    for (const std::string& name : file.sectionNames()) {
        // A name that appears twice is one section, as the profile layer reads it.
        if (text::trim(name).empty() || findSection(name) != nullptr) {
            continue;
        }
        Section section{name, {}};
        for (const auto& [key, value] : file.entries(name)) {
            const std::string lowerKey = text::lower(key);
            std::erase_if(section.entries,
                          [&](const Entry& e) { return text::equalsNoCase(e.lowerKey, lowerKey); });
            section.entries.push_back({lowerKey, key + kSeparator + value});
        }
        m_sections.push_back(std::move(section));
    }
    m_isExist = false;
    return true;
}

CIniFile::Section* CIniFile::findSection(std::string_view name)
{
    for (Section& s : m_sections) {
        if (text::equalsNoCase(s.name, name)) {
            return &s;
        }
    }
    return nullptr;
}

const CIniFile::Section* CIniFile::findSection(std::string_view name) const
{
    return const_cast<CIniFile*>(this)->findSection(name);
}

CIniFile::Section& CIniFile::currentSection()
{
    if (Section* s = findSection(m_now)) {
        return *s;
    }
    // A section current by name only (a later Load did not find it) is made on first use.
    m_sections.push_back({m_now, {}});
    return m_sections.back();
}

void CIniFile::NowSection(std::string_view name)
{
    if (name == m_now) {
        return;
    }
    m_now = std::string(name);
    const Section* section = findSection(m_now);
    if (section != nullptr) {
        m_isExist = true;
    } else {
        m_sections.push_back({m_now, {}});
        section = &m_sections.back();
        m_isExist = false;
    }
    m_keys.clear();
    for (const Entry& e : section->entries) {
        m_keys.emplace_back(keyOf(e.text));
    }
}

std::vector<std::string> CIniFile::Sections() const
{
    std::vector<std::string> names;
    for (const Section& s : m_sections) {
        names.push_back(s.name);
    }
    return names;
}

void CIniFile::DeleteData(std::string_view Key)
{
    const std::string lowerKey = text::lower(Key);
    if (Section* s = findSection(m_now)) {
        std::erase_if(s->entries,
                      [&](const Entry& e) { return text::equalsNoCase(e.lowerKey, lowerKey); });
    }
    std::erase_if(m_keys, [&](const std::string& k) { return text::equalsNoCase(k, Key); });
}

void CIniFile::Clear()
{
    const std::vector<std::string> keys = m_keys;
    for (const std::string& k : keys) {
        DeleteData(k);
    }
}

std::string CIniFile::data(std::string_view Key) const
{
    const Section* s = findSection(m_now);
    if (s == nullptr) {
        return {};
    }
    const std::string lowerKey = text::lower(Key);
    for (const Entry& e : s->entries) {
        if (text::equalsNoCase(e.lowerKey, lowerKey)) {
            return std::string(valueOf(e.text));
        }
    }
    return {};
}

void CIniFile::data(std::string_view Key, std::string_view value)
{
    DeleteData(Key);
    currentSection().entries.push_back(
        {text::lower(Key), std::string(Key) + kSeparator + std::string(value)});
    m_keys.emplace_back(Key);
}

IniValue CIniFile::InitData(std::string_view Key, int Kind, const IniValue& Default) const
{
    const std::string value = data(Key);
    switch (Kind) {
    case 0:
        return text::trim(value).empty() ? Default : IniValue(value);
    case 1:
        return IsLng(value) ? IniValue(static_cast<std::int32_t>(std::nearbyint(*text::toNumber(value))))
                            : Default;
    case 2:
        return IsSng(value) ? IniValue(*toSingle(value)) : Default;
    case 3:
        if (!IsBool(value)) {
            return Default;
        }
        if (const auto n = text::toNumber(value)) {
            return IniValue(*n != 0.0);
        }
        return IniValue(text::equalsNoCase(trimSpace(value), "true"));
    default:
        return IniValue(value);
    }
}

bool CIniFile::IsBool(std::string_view Text)
{
    const std::string_view t = trimSpace(Text);
    return text::equalsNoCase(t, "true") || text::equalsNoCase(t, "false") ||
           text::toNumber(Text).has_value();
}

bool CIniFile::IsInt(std::string_view Text)
{
    const auto value = text::toNumber(Text);
    return value && fits16(*value);
}

bool CIniFile::IsLng(std::string_view Text)
{
    // The converted number goes through a 16-bit variable before the answer is given.
    const auto value = text::toNumber(Text);
    return value && fits16(*value);
}

bool CIniFile::IsSng(std::string_view Text)
{
    const auto value = toSingle(Text);
    return value && fits16(*value);
}

bool CIniFile::saveSection(std::string_view name)
{
    NowSection(name);
    std::vector<std::pair<std::string, std::string>> entries;
    for (const Entry& e : currentSection().entries) {
        entries.emplace_back(std::string(keyOf(e.text)), std::string(valueOf(e.text)));
    }
    ProfileFile file(m_path);
    file.writeSection(m_now, entries);
    if (!file.save()) {
        return false;
    }
    m_isExist = true;
    return true;
}

bool CIniFile::Save(std::string_view Section)
{
    if (!Section.empty()) {
        return saveSection(Section);
    }
    for (const std::string& name : Sections()) {
        if (!saveSection(name)) {
            return false;
        }
    }
    return true;
}

} // namespace vornhale::settings
