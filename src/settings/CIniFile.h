#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vornhale::settings {

/// A value handed out by `CIniFile::InitData`: text, a 32-bit number, a single-precision
/// number or a Boolean, as the kind asks for.
using IniValue = std::variant<std::string, std::int32_t, float, bool>;

/// A whole profile file held in memory, section by section, for the window-position file.
///
/// Sections and keys are found without regard to case. An entry is kept as key, a zero
/// character and value, under its lower-case key; a section keeps its entries in stored order,
/// and storing a key again moves it to the end. Nothing reaches the disk but through `Save`,
/// which replaces the whole content of a section in the file.
class CIniFile
{
public:
    /// Reads every section of `FileName` (a missing file has none). The current section name
    /// is kept; the keys of the current section are emptied until `NowSection` changes.
    /// `IsExist` becomes false. Always true.
    bool Load(const std::filesystem::path& FileName);

    /// Saves one section, making it current first, or with the empty text every section in
    /// order, stopping at the first that cannot be written. The section's content in the file
    /// is replaced by its entries. True when written; a write sets `IsExist`.
    bool Save(std::string_view Section = {});

    /// The current section name.
    const std::string& NowSection() const { return m_now; }
    /// Makes `name` current when it differs (exactly) from the current name. A known section
    /// sets `IsExist`; an unknown one is created empty and clears it. Either way the keys of
    /// the section are taken afresh from its entries.
    void NowSection(std::string_view name);

    bool IsExist() const { return m_isExist; }

    /// The section names, in file order, then those created later.
    std::vector<std::string> Sections() const;
    /// The keys of the current section, in stored order, as they were spelt when stored.
    const std::vector<std::string>& Keys() const { return m_keys; }

    /// Removes the entry and the key; a missing key is no error.
    void DeleteData(std::string_view Key);
    /// `DeleteData` for each key of the current section.
    void Clear();

    /// The value of `Key` in the current section; empty when missing.
    std::string data(std::string_view Key) const;
    /// Replaces `Key` in the current section by `value` (it moves to the end).
    void data(std::string_view Key, std::string_view value);

    /// Kind 0: the value when it is not blank, else `Default`; 1: the value as a 32-bit
    /// number when `IsLng`, else `Default`; 2: as a single-precision number when `IsSng`;
    /// 3: as a Boolean when `IsBool`; any other kind: the value as text.
    IniValue InitData(std::string_view Key, int Kind, const IniValue& Default) const;

    /// Whether the text converts without error to a Boolean ("True", "False" or a number).
    static bool IsBool(std::string_view Text);
    /// Whether the text converts to a 16-bit number.
    static bool IsInt(std::string_view Text);
    /// Whether the text converts to a 32-bit number that also fits 16 bits: the converted
    /// value is narrowed to 16 bits before the answer, so 32768 fails.
    static bool IsLng(std::string_view Text);
    /// Whether the text converts to a single-precision number that, rounded, fits 16 bits.
    static bool IsSng(std::string_view Text);

private:
    struct Entry
    {
        std::string lowerKey;
        std::string text; // key, '\0', value
    };
    struct Section
    {
        std::string name;
        std::vector<Entry> entries;
    };

    Section* findSection(std::string_view name);
    const Section* findSection(std::string_view name) const;
    Section& currentSection();
    bool saveSection(std::string_view name);

    std::filesystem::path m_path;
    std::string m_now;
    std::vector<Section> m_sections;
    bool m_isExist = false;
    std::vector<std::string> m_keys;
};

} // namespace vornhale::settings
