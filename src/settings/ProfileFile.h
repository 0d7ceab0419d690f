#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>
#include <string_view>
#include <utility>
#include <vector>

namespace vornhale::settings {

/// A profile file ("[section]" lines and "key=value" lines, Shift-JIS) held in memory, read
/// and written by the rules the settings files have always followed: sections and keys
/// compare without regard to case; a key keeps the place of its first writing; an unknown
/// key goes behind the last line of its section and an unknown section to the end of the
/// file; every other line is left as it stands; a value read is cut at 127 bytes.
class ProfileFile
{
public:
    /// The file's lines; a missing or unreadable file is empty.
    explicit ProfileFile(std::filesystem::path path);

    /// The value of `key` in `section`, trimmed (and without enclosing quotes), cut at 127
    /// Shift-JIS bytes; empty when the section or the key is absent.
    std::string read(std::string_view section, std::string_view key) const;

    /// Sets `key` in `section` (in memory; `save` writes the file).
    void write(std::string_view section, std::string_view key, std::string_view value);

    /// Replaces the whole content of `section` by `entries` (in memory).
    void writeSection(std::string_view section,
                      const std::vector<std::pair<std::string, std::string>>& entries);

    /// The names of the sections, in file order.
    std::vector<std::string> sectionNames() const;
    /// The key/value entries of a section, in file order.
    std::vector<std::pair<std::string, std::string>> entries(std::string_view section) const;

    /// Writes the file with CR LF line ends, whole under a temporary name in the same folder
    /// that is then renamed into place, so no reader sees a partial file. Returns false (the
    /// previous file untouched) when it cannot be written.
    bool save() const;

    const std::vector<std::string>& lines() const { return m_lines; }
    const std::filesystem::path& path() const { return m_path; }

private:
    /// Where a section stands: its header line, one past its last line, its last line that is
    /// not blank (the header when none), and the first line of each key, by the key in upper
    /// case.
    struct Section
    {
        std::size_t header = 0, end = 0, lastFilled = 0;
        std::unordered_map<std::string, std::size_t> keys;
    };
    /// The first section of each name (in upper case), so that a read or a write finds its
    /// line without walking the file. Built on first use; dropped when a line is inserted
    /// or removed.
    using Layout = std::unordered_map<std::string, Section>;

    const Layout& layout() const;
    /// The first section named `section`, or null.
    const Section* findSection(std::string_view section) const;

    std::filesystem::path m_path;
    std::vector<std::string> m_lines;
    mutable std::optional<Layout> m_layout;
};

} // namespace vornhale::settings
