#include "settings/ProfileFile.h"

#include "base/FileReplace.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisCodec.h"

#include <system_error>

namespace vornhale::settings {
namespace {

constexpr std::size_t kValueBytes = 127;

// The section name of a header line, or nothing when the line is no header.
bool headerName(std::string_view line, std::string& name)
{
    const std::string_view t = text::trim(line);
    if (t.empty() || t.front() != '[') {
        return false;
    }
    const auto close = t.find(']');
    name = std::string(text::trim(t.substr(1, close == std::string_view::npos ? t.size() - 1 : close - 1)));
    return true;
}

// The key of a "key=value" line, or nothing.
bool keyOf(std::string_view line, std::string_view& key, std::string_view& value)
{
    const auto eq = line.find('=');
    if (eq == std::string_view::npos) {
        return false;
    }
    key = text::trim(line.substr(0, eq));
    value = text::trim(line.substr(eq + 1));
    return true;
}

} // namespace

ProfileFile::ProfileFile(std::filesystem::path path) : m_path(std::move(path))
{
    std::error_code ec;
    if (!std::filesystem::is_regular_file(m_path, ec)) {
        return;
    }
    try {
        m_lines = text::readLines(m_path);
    } catch (...) {
        m_lines.clear();
    }
}

const ProfileFile::Layout& ProfileFile::layout() const
{
    if (m_layout) {
        return *m_layout;
    }
    Layout layout;
    Section* current = nullptr;
    std::string name;
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        if (headerName(m_lines[i], name)) {
            if (current != nullptr) {
                current->end = i;
            }
            // A later section of the same name is never looked at.
            const auto [at, added] = layout.try_emplace(text::upper(name));
            current = added ? &at->second : nullptr;
            if (current != nullptr) {
                current->header = current->lastFilled = i;
            }
            continue;
        }
        if (current == nullptr) {
            continue;
        }
        std::string_view k, v;
        if (keyOf(m_lines[i], k, v)) {
            current->keys.try_emplace(text::upper(k), i);
        }
        if (!text::trim(m_lines[i]).empty()) {
            current->lastFilled = i;
        }
    }
    if (current != nullptr) {
        current->end = m_lines.size();
    }
    m_layout = std::move(layout);
    return *m_layout;
}

const ProfileFile::Section* ProfileFile::findSection(std::string_view section) const
{
    const Layout& l = layout();
    const auto it = l.find(text::upper(text::trim(section)));
    return it == l.end() ? nullptr : &it->second;
}

std::string ProfileFile::read(std::string_view section, std::string_view key) const
{
    const Section* s = findSection(section);
    if (s == nullptr) {
        return {};
    }
    const auto it = s->keys.find(text::upper(text::trim(key)));
    if (it == s->keys.end()) {
        return {};
    }
    std::string_view k, v;
    keyOf(m_lines[it->second], k, v);
    if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front()) {
        v = v.substr(1, v.size() - 2);
    }
    // The value buffer holds 127 bytes of Shift-JIS and its terminating zero.
    const std::string bytes = text::encodeSjis(v);
    return bytes.size() <= kValueBytes ? std::string(v)
                                       : text::decodeSjis(bytes.substr(0, kValueBytes));
}

void ProfileFile::write(std::string_view section, std::string_view key, std::string_view value)
{
    std::string line = std::string(key) + "=" + std::string(value);
    const Section* s = findSection(section);
    if (s == nullptr) {
        m_lines.push_back("[" + std::string(section) + "]");
        m_lines.push_back(std::move(line));
        m_layout.reset();
        return;
    }
    const std::string wanted = text::upper(text::trim(key));
    if (const auto it = s->keys.find(wanted); it != s->keys.end()) {
        m_lines[it->second] = std::move(line);
        // A key that holds "=" or blanks of its own reads back as another key.
        std::string_view k, v;
        if (!keyOf(m_lines[it->second], k, v) || text::upper(k) != wanted) {
            m_layout.reset();
        }
        return;
    }
    m_lines.insert(m_lines.begin() + static_cast<long>(s->lastFilled + 1), std::move(line));
    m_layout.reset();
}

void ProfileFile::writeSection(std::string_view section,
                               const std::vector<std::pair<std::string, std::string>>& entries)
{
    std::size_t header = 0, end = 0;
    if (const Section* s = findSection(section)) {
        header = s->header;
        end = s->end;
    } else {
        m_lines.push_back("[" + std::string(section) + "]");
        header = m_lines.size() - 1;
        end = m_lines.size();
    }
    m_layout.reset();
    m_lines.erase(m_lines.begin() + static_cast<long>(header + 1), m_lines.begin() + static_cast<long>(end));
    std::vector<std::string> content;
    for (const auto& [k, v] : entries) {
        content.push_back(k + "=" + v);
    }
    m_lines.insert(m_lines.begin() + static_cast<long>(header + 1), content.begin(), content.end());
}

std::vector<std::string> ProfileFile::sectionNames() const
{
    std::vector<std::string> names;
    std::string name;
    for (const std::string& line : m_lines) {
        if (headerName(line, name)) {
            names.push_back(name);
        }
    }
    return names;
}

std::vector<std::pair<std::string, std::string>> ProfileFile::entries(std::string_view section) const
{
    std::vector<std::pair<std::string, std::string>> out;
    const Section* s = findSection(section);
    if (s == nullptr) {
        return out;
    }
    for (std::size_t i = s->header + 1; i < s->end; ++i) {
        std::string_view k, v;
        if (keyOf(m_lines[i], k, v) && !k.empty()) {
            out.emplace_back(std::string(k), std::string(v));
        }
    }
    return out;
}

bool ProfileFile::save() const
{
    std::string bytes;
    for (const std::string& line : m_lines) {
        bytes += text::encodeSjis(line);
        bytes += "\r\n";
    }
    // Written whole under a temporary name and renamed: a reader never sees half a file, and a
    // run killed while writing leaves the previous file as it was.
    return base::replaceFileWith(m_path, bytes);
}

} // namespace vornhale::settings
