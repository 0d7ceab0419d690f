#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vornhale::settings {

/// The file of the program folder that stores a key.
enum class SettingsFileId {
    None,        ///< a value that lives in memory only, until the program ends
    Options,     ///< `Vornhale_new.ini`, and its working copy `Vornhale.ini`
    Environment, ///< `Vornhale_cfg.ini`
    FileDates,   ///< `Vornhale_fdt.ini`
    ZoneMark,    ///< `Vornhale_Zone_moji.ini`
};

/// Where in its file a key stands.
enum class KeySection {
    Own,       ///< the section named like the file ("Vornhale_new.ini")
    SetKnName, ///< "sSetKnName": written there, read back from the file's own section
    ColWidth,  ///< "ColWidth_Grid": the grid ticks are read under a name with "_" added
    Main,      ///< "Main"
    ModeTable, ///< written to the own section, read from the environment section
    Named,     ///< the section in `section`
};

/// What a value holds.
enum class ValueKind {
    Tick,   ///< "1" or "0"
    Group,  ///< the index of the member that is on, below `members`
    Text,   ///< any text
    Number, ///< a small integer: a text that is no number reads as 0
    Widths, ///< a comma list of widths, normalised on every read and write
    Stamp,  ///< written by the program itself (`version`, `restart`)
};

/// Where the first start takes a value from.
enum class DefaultRule {
    Value,    ///< `defaultValue` as it stands
    ThisYear, ///< the year of today, four digits
    Today,    ///< today, eight digits
    Found,    ///< the environment defaults look for it on the disk
    None,     ///< left as it is
};

/// One key of the settings: the one description from which the files are read and written,
/// the defaults are made and the options of the window are checked.
struct SchemaKey
{
    std::string key;
    SettingsFileId file = SettingsFileId::Options;
    KeySection section = KeySection::Own;
    std::string_view sectionName; ///< for `KeySection::Named`
    ValueKind kind = ValueKind::Text;
    int members = 0; ///< for a group: how many members it has
    DefaultRule rule = DefaultRule::None;
    std::string_view defaultValue;
    /// For an environment key: the value a first start of the option files puts over the
    /// environment's own default (empty when it leaves it).
    std::string_view firstStartValue;
};

/// Every key, file by file, each file's keys in the order of writing: the option files, the
/// environment, the file dates, the zone mark, then the values held in memory only.
std::span<const SchemaKey> optionSchema();

/// The key `name` of `file` (case-blind); nullptr when there is none.
const SchemaKey* findSchemaKey(std::string_view name,
                               SettingsFileId file = SettingsFileId::Options);
/// The key `name` in whichever file stores it, the option files first, then the values in
/// memory; nullptr when there is none.
const SchemaKey* findAnySchemaKey(std::string_view name);

/// The first-start value of a key for `today` ("yyyymmdd"); empty for `Found` and `None`.
std::string defaultValueOf(const SchemaKey& key, std::string_view today);

/// Whether `value` is one that a key of this kind can hold: a tick "0" or "1", a group
/// member from 0 to `members` - 1, a number; texts and widths take anything.
bool valueFits(const SchemaKey& key, std::string_view value);

} // namespace vornhale::settings
